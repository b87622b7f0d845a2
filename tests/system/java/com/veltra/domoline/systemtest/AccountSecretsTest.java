package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/**
 * Gives the password of this run to accounts in every way that it can be taken or refused. The
 * trace is on; the driver script then looks for it in all that the processes left behind.
 */
@ExtendWith(AttachedGateway.class)
class AccountSecretsTest {
    private static final int kSetWebPassword = 0x47209044;
    private static final String kPassword = Gateway.property("wap.secret.password");

    private static String password(int iLength) {
        return kPassword.repeat(iLength / kPassword.length() + 1).substring(0, iLength);
    }

    private static int setWeb(String password) {
        return Box.kRightConfig.setHTTPUserPassword(password);
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void itIsTaken(AccountService service) {
        assertEquals(0, service.deleteAll());
        assertEquals(0, service.add("keeper", kPassword));
        assertEquals(0, service.add("keeper-2", password(service.iPasswordMax)));
        assertEquals(List.of("keeper", "keeper-2"), service.accounts());
        assertEquals("{\"Result\":0,", service.info().substring(0, 12));
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void itIsRefused(AccountService service) {
        String user = "refused";
        assertEquals(-1, service.add(user, password(service.iPasswordMax + 1)));
        assertEquals(-1, service.add(user, password(10_000)));
        assertEquals(-1, service.add("", kPassword));
        assertEquals(-1, service.add(null, kPassword));
        assertEquals(-1, service.add("u".repeat(257), kPassword));
        int iAddRpc = service.iSetRightRpc + 1;
        for (String process : new String[] {Gateway.kOsgiProxy, service.owner}) {
            Gateway.fault(process, iAddRpc, "--code", "5", "--times", "1");
            assertEquals(-1, service.add(user, kPassword), process);
            Gateway.kill(process);
            try {
                assertEquals(-1, service.add(user, kPassword), process);
            } finally {
                Gateway.start(process);
            }
        }
        assertEquals(0, service.add(user, kPassword));
        assertEquals(-1, service.add(user, kPassword), "once more");
        assertEquals(0, service.delete(user));
    }

    @Test
    void theWebTakesItAndRefusesIt() {
        assertEquals(0, setWeb(kPassword));
        assertEquals(0, setWeb(password(127)));
        assertEquals(-1, setWeb(password(128)));
        for (String process : new String[] {Gateway.kOsgiProxy, Gateway.kTarn}) {
            Gateway.fault(process, kSetWebPassword, "--code", "5", "--times", "1");
            assertEquals(-1, setWeb(kPassword), process);
        }
    }
}
