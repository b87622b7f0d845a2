/**
 * Services of the gateway's access network: its WAN connections as they run, and the optical
 * uplink.
 *
 * <p>Most answers are JSON texts that a process of the gateway writes by itself, and come as they
 * were written. What the library answers when a request fails is fixed for each method, blanks
 * included. Read all of them with a JSON parser, not by comparing texts.
 */
package com.veltra.domoline.deviceservice.kavo.wap.ozi.jni;
