package com.veltra.domoline.console;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.Method;
import java.util.Arrays;
import org.junit.jupiter.api.Test;

/** How answers are printed, and which of them are failures. */
class AnswersTest {
    /** Methods with an answer of each kind. */
    interface Sample {
        String getText();

        String getIPTVStatus();

        int getPONIfUpTime();

        int getNumber();

        int setNumber();

        int startThread();

        int reset();

        int getSubscribeVoIPEvent();

        int usbRead();

        byte[] getBytes();

        String[] getTexts();

        void setNothing();

        boolean isOn();
    }

    private static Outcome outcome(String name, Object value) {
        Method method = Arrays.stream(Sample.class.getMethods())
                                .filter(candidate -> candidate.getName().equals(name))
                                .findFirst()
                                .orElseThrow();
        return new Outcome(method, value, null, 0);
    }

    private static String pretty(String answer) {
        return JsonText.pretty(answer, Palette.PLAIN);
    }

    @Test
    void jsonIsPrintedAMemberALine() {
        assertEquals(
                "{\n  \"Result\": 0,\n  \"List\": [\n    {\n      \"a\": 1.50\n    },\n    null,\n"
                        + "    true\n  ]\n}",
                pretty("{\"Result\":0 , \"List\":[{\"a\":1.50},null,true]}"));
        assertEquals("{\n  \"o\": {},\n  \"l\": []\n}", pretty("{ \"o\": { }, \"l\": [ ] }"));
    }

    @Test
    void textsKeepTheirCharactersAndControlsAreEscaped() {
        assertEquals("{\n  \"k\\\"\": \"\u5BB6 \\\\ \\n\\u001b\"\n}",
                pretty("{\"k\\\"\":\"\u5BB6 \\\\ \\n\\u001b\"}"));
        assertEquals("a\\u001b[31mb\\n", pretty("a\u001b[31mb\n"));
    }

    @Test
    void whatIsNoJsonIsPrintedAsItIs() {
        for (String text : new String[] {"1.0", "{\"a\":1", "{} {}", "{a", "", "[1,]x", "null"}) {
            assertEquals(text, pretty(text));
        }
    }

    @Test
    void coloursAreForTerminalsOnly() {
        assertEquals("{\n  \u001B[36m\"R\"\u001B[0m: \u001B[33m-1\u001B[0m,\n"
                        + "  \u001B[36m\"t\"\u001B[0m: \u001B[32m\"x\"\u001B[0m\n}",
                JsonText.pretty("{\"R\":-1,\"t\":\"x\"}", Palette.COLOURED));
        assertFalse(pretty("{\"R\":-1}").contains("\u001B"));
    }

    @Test
    void textsFailByTheirResult() {
        assertTrue(outcome("getText", "{\"Result\":-1}").failed());
        assertTrue(outcome("getText", "{ \"Result\": -2 }").failed());
        assertTrue(outcome("getText", "{ \"Result\": 1 }").failed());
        assertTrue(outcome("getText", null).failed());
        assertFalse(outcome("getText", "{\"Result\":0 }").failed());
        assertFalse(outcome("getText", "{\"Result\":\"-1\"}").failed());
        assertFalse(outcome("getText", "{\"Other\":-1}").failed());
        assertFalse(outcome("getText", "{\"List\":[{\"Result\":-1}]}").failed());
        assertFalse(outcome("getText", "-1").failed());
        assertFalse(outcome("getText", "").failed());
        assertTrue(outcome("getIPTVStatus", "").failed());
        assertFalse(outcome("getIPTVStatus", "IPTV_DISCONNECT").failed());
    }

    @Test
    void numbersFailByTheKindOfMethod() {
        assertTrue(outcome("getNumber", -1).failed());
        assertFalse(outcome("getNumber", Integer.MIN_VALUE).failed());
        assertFalse(outcome("getNumber", -2).failed());
        assertTrue(outcome("getPONIfUpTime", -2).failed());
        assertTrue(outcome("getPONIfUpTime", -1).failed());
        assertFalse(outcome("getPONIfUpTime", 3600).failed());
        assertFalse(outcome("getNumber", 0).failed());
        assertTrue(outcome("setNumber", -2).failed());
        assertFalse(outcome("setNumber", 3).failed());
        assertTrue(outcome("startThread", 1).failed());
        assertFalse(outcome("startThread", 0).failed());
        assertTrue(outcome("reset", 1).failed());
        assertFalse(outcome("reset", 0).failed());
        assertTrue(outcome("getSubscribeVoIPEvent", -2).failed());
        assertTrue(outcome("getSubscribeVoIPEvent", 5).failed());
        assertTrue(outcome("usbRead", -2).failed());
        assertFalse(outcome("usbRead", 6).failed());
    }

    @Test
    void whatACallReadIsShownInBytesAndAsText() {
        Outcome read = outcome("usbRead", 4);
        read.addFilled("abBuffer", new byte[] {'O', 'K', '\r', 0x1B, (byte) 0xFF, 0, 0});
        assertEquals("4\nabBuffer: 4f4b0d1bff0000 \"OK\\u000d\\u001b\u00FF\"",
                read.describe(Palette.PLAIN));
    }

    @Test
    void otherAnswers() {
        assertFalse(outcome("setNothing", null).failed());
        assertEquals("done", outcome("setNothing", null).describe(Palette.PLAIN));
        assertFalse(outcome("isOn", false).failed());
        assertEquals("00ff10", outcome("getBytes", new byte[] {0, -1, 16}).describe(Palette.PLAIN));
        assertEquals("a\nb", outcome("getTexts", new String[] {"a", "b"}).describe(Palette.PLAIN));
        Outcome thrown =
                new Outcome(Sample.class.getMethods()[0], null, new IllegalStateException("x"), 0);
        assertTrue(thrown.failed());
        assertEquals("java.lang.IllegalStateException: x", thrown.describe(Palette.PLAIN));
    }
}
