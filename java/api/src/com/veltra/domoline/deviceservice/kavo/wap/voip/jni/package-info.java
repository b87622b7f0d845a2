/**
 * Services of the gateway's telephony: the state of the telephone ports, and who is told of voice
 * events.
 *
 * <p>When memory runs out, a method answers with one of its failures, or as though that were not
 * there which there was no memory for: an element of an array or of a list. A text may also be
 * {@code null} then.
 */
package com.veltra.domoline.deviceservice.kavo.wap.voip.jni;
