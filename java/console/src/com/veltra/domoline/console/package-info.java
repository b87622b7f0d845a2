/**
 * The console: calls every service class that is on the class path, from a terminal or a script.
 *
 * <p>It knows no service by name. {@link com.veltra.domoline.console.ServiceCatalog} finds them, so
 * a service class that is added to the library's jar appears here by itself.
 */
package com.veltra.domoline.console;
