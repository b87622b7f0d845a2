/**
 * Services of the gateway's telephony: the state of the telephone ports, and who is told of voice
 * events.
 */
package com.veltra.domoline.deviceservice.kavo.wap.voip.jni;
