package com.veltra.domoline.systemtest;

import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.extension.ExtendWith;

/** Tests that change much: each of them begins with a new gateway and the home as shipped. */
@ExtendWith(AttachedGateway.class)
abstract class NewGatewayEachTime {
    @BeforeEach
    void newGateway() {
        Gateway.startOver();
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }
}
