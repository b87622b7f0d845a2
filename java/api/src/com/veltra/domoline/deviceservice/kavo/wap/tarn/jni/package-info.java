/**
 * Services of the gateway itself and of what is plugged into it: its reset, and USB serial devices
 * and storage.
 *
 * <p>Methods that ask one of the gateway's processes wait for its answer; a process that is not
 * running makes them fail at once. Answers that are texts are JSON: read them with a parser, not by
 * comparing texts.
 *
 * <p>When memory runs out, a method answers with one of its failures, or as though that were not
 * there which there was no memory for: an element of an array or of a list. A text may also be
 * {@code null} then.
 */
package com.veltra.domoline.deviceservice.kavo.wap.tarn.jni;
