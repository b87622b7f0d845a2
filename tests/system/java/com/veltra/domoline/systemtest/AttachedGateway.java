package com.veltra.domoline.systemtest;

import org.junit.jupiter.api.extension.AfterTestExecutionCallback;
import org.junit.jupiter.api.extension.BeforeAllCallback;
import org.junit.jupiter.api.extension.ExtensionContext;

/**
 * For tests that script faults: attaches this virtual machine to the gateway, and takes the faults
 * back as soon as a test has ended, before the test's class puts its home in order.
 */
final class AttachedGateway implements BeforeAllCallback, AfterTestExecutionCallback {
    @Override
    public void beforeAll(ExtensionContext context) {
        Gateway.attach();
    }

    @Override
    public void afterTestExecution(ExtensionContext context) {
        Gateway.clear();
    }
}
