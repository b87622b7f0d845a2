/**
 * The way from Java into the gateway: loading the native library and attaching to the message
 * service. The services themselves are in the packages below this one.
 */
package com.veltra.domoline.deviceservice.kavo.wap;
