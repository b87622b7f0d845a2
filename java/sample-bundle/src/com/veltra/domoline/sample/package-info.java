/**
 * A bundle to copy from. It watches the hosts on the LAN, says who is new, and black-lists one that
 * is unwanted, with three of the gateway's services: what the device is, who is on the LAN, and who
 * may not be.
 *
 * <p>{@link com.veltra.domoline.sample.Activator} is where the framework comes in. What a bundle
 * has to take care of is said where it is done: attaching once, working on a thread of its own,
 * telling an answer from a failure, and leaving nothing behind.
 */
package com.veltra.domoline.sample;
