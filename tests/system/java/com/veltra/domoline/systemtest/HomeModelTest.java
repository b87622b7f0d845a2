package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import java.util.Map;
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
    }

    @Test
    void evenIfItWouldHaveChangedNothing() {
        model.mayHaveChanged(kKey, now -> "off");
        assertFalse(model.isCertain(kKey));
        model.changed(kKey, now -> "on");
        assertEquals("", complaint("off"));
        assertEquals(1, model.everUncertain());
    }

    @Test
    void aLookAtTheHomeMakesItCertainAgain() {
        model.mayHaveChanged(kKey, now -> "on");
        model.adopt("lights", Map.of(kKey, "on"));
        assertTrue(model.isCertain(kKey));
        assertEquals("lights on is off and may be [on]", complaint("off"));
        assertEquals(List.of(kKey), model.keys("lights", true));
    }

    @Test
    void whatNobodyKnowsIsAbsent() {
        model.adopt("", Map.of());
        assertEquals("lights on is off and may be [(absent)]", complaint("off"));
        assertEquals(List.of(), model.differences("", Map.of()));
    }
}
