package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import java.util.Map;
import java.util.function.UnaryOperator;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** The model that the storms are measured by: what it allows, and what it doesn't. */
class HomeModelTest {
    private static final String kKey = "lights on";

    private final HomeModel model = new HomeModel();

    @BeforeEach
    void off() {
        model.adopt("", Map.of(kKey, "off"));
    }

    private String complaint(String found) {
        return String.join("\n", model.differences("", Map.of(kKey, found)));
    }

    @Test
    void aChangeThatIsDoneLeavesOneValue() {
        model.changed(kKey, now -> "on");
        assertEquals("", complaint("on"));
        assertEquals("lights on is off and may be [on]", complaint("off"));
        assertTrue(model.isCertain(kKey));
    }

    @Test
    void aChangeThatMayHaveHappenedLeavesTwo() {
        model.mayHaveChanged(kKey, now -> "on");
        assertEquals("", complaint("off"));
        assertEquals("", complaint("on"));
        assertEquals("lights on is blue and may be [off, on]", complaint("blue"));
        assertFalse(model.isCertain(kKey));
    }

    @Test
    void whatMayHaveHappenedMayComeAfterWhatWasDoneLater() {
        model.mayHaveChanged(kKey, now -> "blue");
        model.changed(kKey, now -> "on");
        assertEquals("", complaint("blue"));
        assertEquals("", complaint("on"));
        // The later one was answered: before it is no longer possible.
        assertNotEquals("", complaint("off"));
    }

    @Test
    void ofTwoThatMayHaveHappenedEitherMayBeTheLast() {
        model.mayHaveChanged(kKey, now -> "blue");
        model.changed(kKey, now -> "on");
        model.mayHaveChanged(kKey, now -> "red");
        model.changed(kKey, now -> "white");
        assertEquals("lights on is on and may be [white, blue, red]", complaint("on"));
    }

    @Test
    void whatCountsIsCountedOnceForEachChange() {
        UnaryOperator<String> oneMore = now -> String.valueOf(Integer.parseInt(now) + 1);
        model.adopt("", Map.of(kKey, "5"));
        model.mayHaveChanged(kKey, oneMore);
        model.mayHaveChanged(kKey, oneMore);
        model.changed(kKey, oneMore);
        assertEquals("", complaint("6"));
        assertEquals("", complaint("7"));
        assertEquals("", complaint("8"));
        assertNotEquals("", complaint("5"));
        assertNotEquals("", complaint("9"));
        model.changed(kKey, oneMore);
        assertEquals("lights on is 6 and may be [7, 8, 9]", complaint("6"));
    }

    @Test
    void aPendingChangeMayComeBeforeOneThatKeepsAPart() {
        model.adopt("", Map.of(kKey, "red/on"));
        model.mayHaveChanged(kKey, HomeModel.to("blue/on"));
        model.changed(kKey, now -> now.substring(0, now.indexOf('/')) + "/off");
        assertEquals("", complaint("red/off"));
        assertEquals("", complaint("blue/off"));
        assertEquals("", complaint("blue/on"));
        assertNotEquals("", complaint("red/on"));
    }

    @Test
    void manyPendingChangesAreFollowed() {
        for (int i = 0; i < 100; i++) {
            model.mayHaveChanged(kKey, HomeModel.to("colour " + i % 3));
            model.changed(kKey, HomeModel.to("shade " + i));
        }
        assertEquals("lights on is shade 98 and may be [shade 99, colour 0, colour 1, colour 2]",
                complaint("shade 98"));
    }

    @Test
    void evenIfItWouldHaveChangedNothing() {
        model.mayHaveChanged(kKey, now -> "off");
        assertFalse(model.isCertain(kKey));
        model.changed(kKey, now -> "on");
        assertEquals("", complaint("off"));
        assertEquals("", complaint("on"));
        assertEquals(1, model.everUncertain());
    }

    @Test
    void aLookAtTheHomeMakesItCertainAgain() {
        model.mayHaveChanged(kKey, now -> "on");
        model.adopt("lights", Map.of(kKey, "on"));
        assertTrue(model.isCertain(kKey));
        assertEquals("lights on is off and may be [on]", complaint("off"));
        assertEquals(List.of(kKey), model.keys("lights", true));
        assertEquals(Map.of(kKey, "on"), model.certainRows("lights"));
    }

    @Test
    void whatNobodyKnowsIsAbsent() {
        model.adopt("", Map.of());
        assertEquals("lights on is off and may be [(absent)]", complaint("off"));
        assertEquals(List.of(), model.differences("", Map.of()));
    }
}
