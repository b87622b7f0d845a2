/**
 * Services of the gateway itself and of what is plugged into it: its reset, and USB serial devices
 * and storage.
 *
 * <p>Methods that ask one of the gateway's processes wait for its answer; a process that is not
 * running makes them fail at once. Answers that are texts are JSON: read them with a parser, not by
 * comparing texts.
 */
package com.veltra.domoline.deviceservice.kavo.wap.tarn.jni;
