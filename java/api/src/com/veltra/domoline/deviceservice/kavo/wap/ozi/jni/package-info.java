/**
 * Services of the gateway's access network: its WAN connections as they run, and the optical
 * uplink.
 *
 * <p>Most answers are JSON texts that a process of the gateway writes by itself, and come as they
 * were written. What the library answers when a request fails is fixed for each method, blanks
 * included. Read all of them with a JSON parser, not by comparing texts.
 *
 * <p>When memory runs out, a method answers with one of its failures, or as though that were not
 * there which there was no memory for: an element of an array or of a list. A text may also be
 * {@code null} then.
 */
package com.veltra.domoline.deviceservice.kavo.wap.ozi.jni;
