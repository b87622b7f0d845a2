package com.veltra.domoline.systemtest;

import java.util.List;
import java.util.function.Supplier;

/** The queries about traffic. The answers are written out by hand. */
enum TrafficMethod implements GatewayMethod {
    MONITORED(Gateway.kGulm, 0x483041A5,
            () -> Traffic.kMonitor.getTrafficMonitoringDestAddressInfo(), Traffic.kNoAddresses,
            Traffic.kFailedWithoutBlanks),
    MIRROR_RULES(Gateway.kGulm, 0x48304193, () -> Traffic.kMirror.getMirroRuleInfo(),
            Traffic.kNoRules, Traffic.kFailed),
    FORWARD_RULES(Gateway.kGulm, 0x48304197, () -> Traffic.kForward.getForwardRuleInfo(),
            Traffic.kNoRules, Traffic.kFailed),
    HTTP_RULES(Gateway.kGulm, 0x4830419A, () -> Traffic.kHttp.getHTTPTrafficProcessRuleInfo(),
            Traffic.kNoRules, Traffic.kFailed),
    FLOW_MEMBERS(Gateway.kGulm, 0x4830419E,
            () -> Traffic.kFlows.getTrafficInfoByFlow(Traffic.kFlow),
            Lan.list(Traffic.member("198.51.100.20", "443")), Traffic.kFailed),
    FLOW_STATS(Gateway.kGulm, 0x4830419F, () -> Traffic.kFlows.getStatsByFlow(Traffic.kFlow),
            "{\"Result\":0,\"UsStats\":0,\"DsStats\":0}", Traffic.kFailed),
    FLOW_SPEED(Gateway.kGulm, 0x483041A0, () -> Traffic.kFlows.getSpeedByFlow(Traffic.kFlow),
            "{\"Result\":0,\"upSpeed\":2000,\"downSpeed\":16000}", Traffic.kFailed),
    FLOW_LIMIT(Gateway.kGulm, 0x483041A1, () -> Traffic.kFlows.getSpeedLimitByFlow(Traffic.kFlow),
            "{\"Result\":0,\"UpSpeed\":0,\"DownSpeed\":0}", Traffic.kFailed),
    FLOW_DSCP(Gateway.kGulm, 0x483041A3, () -> Traffic.kFlows.getDSCPRemarkByFlow(Traffic.kFlow),
            46, -1),
    PING(Gateway.kAppM, 0x47103089, () -> Traffic.kPing.getIPPingDiagnosticsResult(),
            Traffic.kNotRun, Traffic.kFailedWithoutBlanks),
    DNS(Gateway.kAppM, 0x47103097, () -> Traffic.kDns.getDnsDiagnosticsResult(), Traffic.kNotRun,
            Traffic.kFailedWithoutBlanks),
    TRACE_ROUTE(Gateway.kAppM, 0x47103091,
            () -> Traffic.kTraceRoute.getTraceRouteDiagnosticsResult(), Traffic.kNotRun,
            Traffic.kFailedWithoutBlanks);

    private final Query query;

    TrafficMethod(
            String process, int iRpc, Supplier<Object> call, Object golden, Object failure) {
        query = new Query(List.of(process), iRpc, call, golden, failure);
    }

    @Override
    public Query query() {
        return query;
    }
}
