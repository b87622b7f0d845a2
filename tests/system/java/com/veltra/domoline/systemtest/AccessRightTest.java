package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** Who may log in to the services of the gateway, and who is listed as such. */
@ExtendWith(AttachedGateway.class)
class AccessRightTest {
    private static final int kThreads = 16;
    /** How long a segment's filling lasts until it is seen; a query gives up after 30 s. */
    private static final int[] kFillMilliseconds = {400, 4000, 25000};

    @BeforeEach
    void prepare() {
        for (AccountService service : AccountService.values()) {
            service.prepare();
        }
    }

    /** Whatever a test does, it leaves no shared memory of this virtual machine behind. */
    @AfterEach
    void noSegmentIsLeft() {
        assertEquals(List.of(), Leftovers.segments());
    }

    @AfterAll
    static void restore() {
        for (AccountService service : AccountService.values()) {
            service.restore();
        }
        Gateway.set("web.lanAccess", "true");
        Gateway.set("web.wanAccess", "false");
        Gateway.set("web.passwordChanges", "0");
        BoxMethod.FTP_RIGHTS.assertSucceeds();
        BoxMethod.SAMBA_RIGHTS.assertSucceeds();
        BoxMethod.HTTP_RIGHTS.assertSucceeds();
    }

    // ---- rights ----

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void rightsAreSetAndTold(AccountService service) {
        assertEquals(AccountService.prepared(), service.info());
        assertEquals(0, service.set(3, 1));
        assertEquals(AccountService.told(1, 1, 1, 1), service.info());
        assertEquals(0, service.set(2, 0));
        assertEquals(AccountService.told(0, 1, 1, 0), service.info());
        assertEquals(0, service.set(1, Integer.MAX_VALUE));
        assertEquals(AccountService.told(1, 0, 1, 2147483647), service.info());
        // Off: the flags stay as they were.
        assertEquals(0, service.set(0, -1));
        assertEquals(AccountService.told(1, 0, 0, 4294967295L), service.info());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void onlyTheLowByteOfARightCounts(AccountService service) {
        assertEquals(0, service.set(256, 5), "as 0");
        assertEquals(AccountService.told(1, 0, 0, 5), service.info());
        assertEquals(0, service.set(0x7FFFFF02, 6), "as 2");
        assertEquals(AccountService.told(0, 1, 1, 6), service.info());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void otherRightsAreRefusedWithoutAsking(AccountService service) {
        Gateway.assertAsksNobody(() -> {
            for (int iRight : new int[] {4, 5, 128, 255, -1, 0x104, Integer.MAX_VALUE}) {
                assertEquals(-1, service.set(iRight, 1), "right " + iRight);
            }
        });
        assertEquals(AccountService.prepared(), service.info());
    }

    @Test
    void rightsOfTheServicesAreApart() {
        assertEquals(0, AccountService.FTP.set(3, 1));
        assertEquals(AccountService.prepared(), AccountService.SAMBA.info());
        assertEquals(0, AccountService.SAMBA.set(0, 2));
        assertEquals(AccountService.told(1, 1, 1, 1), AccountService.FTP.info());
        assertEquals(0, AccountService.SAMBA.add("tom", "secret"));
        assertEquals(AccountService.told(1, 1, 1, 1), AccountService.FTP.info());
    }

    // ---- accounts ----

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void accountsAreAddedListedAndDeleted(AccountService service) {
        assertEquals(0, service.add("anna", "secret"));
        assertEquals(0, service.add("tom", "s"));
        assertEquals(0, service.add("K\u00E4fer \uD83C\uDFE0", "K\u00F6nig"));
        assertEquals(
                AccountService.prepared("anna", "tom", "K\u00E4fer \uD83C\uDFE0"), service.info());
        assertEquals(List.of("anna", "tom", "K\u00E4fer \uD83C\uDFE0"), service.accounts());

        assertEquals(-1, service.add("tom", "another"), "there is one already");
        assertEquals(0, service.delete("tom"));
        assertEquals(-1, service.delete("tom"), "there is none any more");
        assertEquals(-1, service.delete("Anna"), "another name");
        assertEquals(AccountService.prepared("anna", "K\u00E4fer \uD83C\uDFE0"), service.info());

        assertEquals(0, service.deleteAll());
        assertEquals(AccountService.prepared(), service.info());
        assertEquals(List.of(), service.accounts());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void anEmptyListHasNothingToDeleteButCanBeEmptied(AccountService service) {
        assertEquals(-1, service.delete("anna"));
        assertEquals(-1, service.delete(null));
        assertEquals(0, service.deleteAll());
        assertEquals(0, service.deleteAll());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void passwordsHaveALength(AccountService service) {
        String longest = "p".repeat(service.iPasswordMax);
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, service.add("anna", longest + "p"));
            // Two bytes each: one more than there may be.
            assertEquals(-1, service.add("anna", "\u00E4".repeat(service.iPasswordMax / 2) + "p"));
            assertEquals(-1, service.add("anna", "p".repeat(100_000)));
            assertEquals(-1, service.add("anna", ""));
            assertEquals(-1, service.add("anna", null));
        });
        assertEquals(0, service.add("anna", longest));
        assertEquals(0, service.add("tom", "\u00E4".repeat(service.iPasswordMax / 2)));
        assertEquals(List.of("anna", "tom"), service.accounts());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void namesHaveALength(AccountService service) {
        String longest = "u".repeat(256);
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, service.add(longest + "u", "secret"));
            assertEquals(-1, service.add("\u00E4".repeat(128) + "u", "secret"));
            assertEquals(-1, service.add("", "secret"));
            assertEquals(-1, service.add(null, "secret"));
            assertEquals(-1, service.add(null, null));
        });
        assertEquals(0, service.add(longest, "secret"));
        assertEquals(0, service.add("\u00E4".repeat(128), "secret"));
        assertEquals(AccountService.prepared(longest, "\u00E4".repeat(128)), service.info());
        assertEquals(-1, service.delete(longest + "u"));
        assertEquals(-1, service.delete(""));
        assertEquals(-1, service.delete(null));
        assertEquals(0, service.delete(longest));
        assertEquals(List.of("\u00E4".repeat(128)), service.accounts());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void manyAccountsAreListedWhole(AccountService service) {
        List<String> users = new ArrayList<>();
        for (int i = 0; i < 32; i++) {
            users.add(String.format("%02d", i) + "u".repeat(254));
            assertEquals(0, service.add(users.get(i), "secret"));
        }
        assertEquals(-1, service.add("one-more", "secret"), "the list is full");
        assertEquals(AccountService.prepared(users.toArray(new String[0])), service.info());
        assertEquals(0, service.deleteAll());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void aNameThatItsPartOfTheSegmentCannotHoldIsRefused(AccountService service) {
        // Each of these characters is written as two, beside the entry's twelve others.
        int iMost = (service.iRoom - 12) / 2;
        assertEquals(-1, service.add("\"".repeat(iMost + 1), "secret"));
        for (int i = 0; i < 3; i++) {
            assertEquals(0, service.add(i + "\"".repeat(iMost - 1), "secret"));
        }
        String printed = "\\\"".repeat(iMost - 1);
        assertEquals(AccountService.prepared("0" + printed, "1" + printed, "2" + printed),
                service.info());
    }

    // ---- the segment ----

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void aSegmentIsThereOnlyWhileItIsFilled(AccountService service) throws Exception {
        for (int iAccounts = 0; iAccounts <= 2; iAccounts++) {
            List<String> sizes = List.of();
            // On a busy machine a whole filling may pass between two looks: then it lasts longer.
            for (int i = 0; i < kFillMilliseconds.length && sizes.isEmpty(); i++) {
                sizes = segmentsWhileFilled(service, kFillMilliseconds[i]);
            }
            assertEquals(List.of(String.valueOf(iAccounts * service.iRoom + 128)), sizes);
            assertEquals(0, service.add("user-" + iAccounts, "secret"));
        }
    }

    /** The segments that are seen first while a query's segment is filled; none when none is. */
    private static List<String> segmentsWhileFilled(AccountService service, int iMilliseconds)
            throws Exception {
        Gateway.fault(Gateway.kOsgiProxy, service.iFillRpc, "--delay",
                String.valueOf(iMilliseconds), "--times", "1");
        CompletableFuture<String> answer = CompletableFuture.supplyAsync(service::info);
        List<String> sizes = Leftovers.segments();
        while (sizes.isEmpty() && !answer.isDone()) {
            Thread.sleep(5);
            sizes = Leftovers.segments();
        }
        assertTrue(answer.get().startsWith("{\"Result\":0,"), answer.get());
        assertEquals(List.of(), Leftovers.segments());
        return sizes;
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void aSegmentThatIsNotFilledIsRemoved(AccountService service) {
        Gateway.fault(Gateway.kOsgiProxy, service.iFillRpc, "--code", "7", "--times", "1");
        assertEquals(Box.kFailed, service.info());
        assertEquals(List.of(), Leftovers.segments());
        assertEquals(AccountService.prepared(), service.info());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void manyThreadsAllGetWholeAnswers(AccountService service) throws Exception {
        for (int i = 0; i < 5; i++) {
            assertEquals(0, service.add("user-" + i, "secret"));
        }
        String whole = AccountService.prepared("user-0", "user-1", "user-2", "user-3", "user-4");
        AccountService other =
                service == AccountService.FTP ? AccountService.SAMBA : AccountService.FTP;
        ExecutorService pool = Executors.newFixedThreadPool(kThreads);
        try {
            List<Future<String>> answers = new ArrayList<>();
            List<Future<String>> others = new ArrayList<>();
            for (int i = 0; i < 10 * kThreads; i++) {
                answers.add(pool.submit(service::info));
                if (i % 4 == 0) {
                    others.add(pool.submit(other::info));
                }
            }
            for (Future<String> answer : answers) {
                assertEquals(whole, answer.get());
            }
            for (Future<String> answer : others) {
                assertEquals(AccountService.prepared(), answer.get());
            }
        } finally {
            pool.shutdown();
        }
    }

    // ---- processes that are away ----

    private static void assertNothingWorks(AccountService service) {
        assertEquals(Box.kFailed, service.info());
        assertEquals(-1, service.set(3, 1));
        assertEquals(-1, service.add("tom", "secret"));
        assertEquals(-1, service.delete("anna"));
        assertEquals(-1, service.deleteAll());
        assertEquals(List.of(), Leftovers.segments());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void anOwnerThatIsAwayFailsEverythingUntilItIsBack(AccountService service) {
        AccountService other =
                service == AccountService.FTP ? AccountService.SAMBA : AccountService.FTP;
        assertEquals(0, service.add("anna", "secret"));
        Gateway.kill(service.owner);
        try {
            assertNothingWorks(service);
            assertEquals(AccountService.prepared(), other.info());
            assertEquals(0, other.add("tom", "secret"));
        } finally {
            Gateway.start(service.owner);
        }
        assertEquals(AccountService.prepared("anna"), service.info());
        assertEquals(0, service.delete("anna"));
        assertEquals(AccountService.prepared(), service.info());
    }

    @Test
    void aProxyThatIsAwayFailsEverythingUntilItIsBack() {
        assertEquals(0, AccountService.FTP.add("anna", "secret"));
        Gateway.kill(Gateway.kOsgiProxy);
        try {
            assertNothingWorks(AccountService.FTP);
            assertEquals(Box.kFailed, AccountService.SAMBA.info());
            assertEquals(0, AccountService.SAMBA.deleteAll(), "nothing is to be deleted there");
            assertEquals(Box.kFailed, Box.kRights.getHTTPRightInfo());
            assertEquals(-1, Box.kRightConfig.setHTTPRight(1));
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword("secret"));
        } finally {
            Gateway.start(Gateway.kOsgiProxy);
        }
        assertEquals(AccountService.prepared("anna"), AccountService.FTP.info());
        assertEquals(AccountService.prepared(), AccountService.SAMBA.info());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void refusedChangesAreFailures(AccountService service) {
        assertEquals(0, service.add("anna", "secret"));
        for (int i = 0; i < 4; i++) {
            Gateway.fault(Gateway.kOsgiProxy, service.iSetRightRpc + i, "--code", "7");
        }
        assertEquals(-1, service.set(1, 1));
        assertEquals(-1, service.add("tom", "secret"));
        assertEquals(-1, service.delete("anna"));
        assertEquals(-1, service.deleteAll());
        Gateway.clear();
        assertEquals(AccountService.prepared("anna"), service.info());
    }

    @ParameterizedTest
    @EnumSource(AccountService.class)
    void accountsOutliveTheirOwner(AccountService service) {
        assertEquals(0, service.add("anna", "secret"));
        assertEquals(0, service.set(2, 3));
        Gateway.crash(service.owner, Gateway.kOsgiProxy);
        assertEquals(AccountService.told(0, 1, 1, 3, "anna"), service.info());
    }

    // ---- the web ----

    private static String web(int iFirst, int iSecond, int iChanges) {
        return "{\"Result\":0,\"LanAccess\":" + iFirst + ",\"WanAccess\":" + iSecond
                + ",\"PasswordChanges\":" + iChanges + "}";
    }

    @Test
    void theWebsRightIsSetAndTold() {
        Gateway.set("web.passwordChanges", "0");
        int[][] rights = {{1, 1, 0}, {2, 0, 1}, {3, 1, 1}, {0, 0, 0}, {0x103, 1, 1}, {256, 0, 0}};
        for (int[] right : rights) {
            assertEquals(0, Box.kRightConfig.setHTTPRight(right[0]));
            assertEquals(web(right[1], right[2], 0), Box.kRights.getHTTPRightInfo());
        }
        Gateway.assertAsksNobody(() -> {
            for (int iRight : new int[] {4, 255, -1, Integer.MAX_VALUE}) {
                assertEquals(-1, Box.kRightConfig.setHTTPRight(iRight), "right " + iRight);
            }
        });
        assertEquals(web(0, 0, 0), Box.kRights.getHTTPRightInfo());
    }

    @Test
    void theWebsPasswordHasALength() {
        Gateway.set("web.passwordChanges", "0");
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword("p".repeat(128)));
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword("\u00E4".repeat(64)));
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword(""));
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword(null));
        });
        assertEquals(0, Box.kRightConfig.setHTTPUserPassword("p".repeat(127)));
        assertEquals(0, Box.kRightConfig.setHTTPUserPassword("p"));
        assertTrue(Box.kRights.getHTTPRightInfo().endsWith(",\"PasswordChanges\":2}"));
    }

    @Test
    void theWebsOwnerIsMissed() {
        Gateway.kill(Gateway.kTarn);
        try {
            assertEquals(Box.kFailed, Box.kRights.getHTTPRightInfo());
            assertEquals(-1, Box.kRightConfig.setHTTPRight(1));
            assertEquals(-1, Box.kRightConfig.setHTTPUserPassword("secret"));
        } finally {
            Gateway.start(Gateway.kTarn);
        }
        assertEquals(0, Box.kRightConfig.setHTTPRight(3));
        assertTrue(Box.kRights.getHTTPRightInfo().startsWith(
                "{\"Result\":0,\"LanAccess\":1,\"WanAccess\":1,"));
    }
}
