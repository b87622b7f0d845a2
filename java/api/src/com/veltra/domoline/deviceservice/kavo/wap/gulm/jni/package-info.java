/**
 * Services of the gateway's broadband side: what the device is, what it consists of, what runs on
 * it, and how busy it is; its lights; its address on the LAN and the DHCP server; the hosts at
 * home, their names, rights and limits; port mappings, routes, VLANs and WAN connections; and who
 * may log in.
 *
 * <p>Answers that are lists of values are JSON texts. Note the two spellings of a failure: answers
 * that the library writes by itself have no blanks, <code>{"Result":-1}</code>, while those printed
 * by its JSON library do, <code>{ "Result": -1 }</code>. Read them with a JSON parser, not by
 * comparing texts.
 *
 * <p>When memory runs out, a method answers with one of its failures, or as though that were not
 * there which there was no memory for: an element of an array or of a list. A text may also be
 * {@code null} then.
 */
package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;
