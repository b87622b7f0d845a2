package com.veltra.domoline.bench;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficForwardServiceJNI;

/** The listing of the forward rules, by the bridge and by plain code over the same JSON library. */
final class RuleList {
    static {
        System.loadLibrary("bench_plain_list");
    }

    private RuleList() {}

    /** As the bridge's method, from the same platform, by plain code. */
    static native String plain();

    static Call bridgeCall() {
        return new TrafficForwardServiceJNI()::getForwardRuleInfo;
    }

    static Call plainCall() {
        return RuleList::plain;
    }
}
