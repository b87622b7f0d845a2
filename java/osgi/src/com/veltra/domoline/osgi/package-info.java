/**
 * Runs bundles on a PC: an OSGi framework with the service classes as a bundle, against the
 * simulated gateway.
 */
package com.veltra.domoline.osgi;
