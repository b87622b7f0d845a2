#include "support/world.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "common/jni_common.h"
#include "support/fake_jni.h"
#include "system/wap_msg_jni.h"

namespace wap::test {

namespace {
thread_local World *t_pstCurrent = nullptr;
}

World::World() : pstOuter(t_pstCurrent) {
    t_pstCurrent = this;
}

World::~World() {
    t_pstCurrent = pstOuter;
}

World *World::Current() {
    return t_pstCurrent;
}

void World::SetCurrent(World *pstWorld) {
    t_pstCurrent = pstWorld;
}

World &World::Get() {
    if (t_pstCurrent == nullptr) {
        std::fputs("a platform function was called on a thread without a World\n", stderr);
        std::abort();
    }
    return *t_pstCurrent;
}

bool World::Hit(Op eOp, std::string_view sName) {
    OpTally &stTally = mapTallies[sName];
    stTally.eOp = eOp;
    ++stTally.uiDone;
    const uint32_t uiOfItsKind = ++auiCounts[static_cast<size_t>(eOp)];
    if (eOp != stPlan.eOp || stPlan.uiAt == 0 || (!stPlan.sName.empty() && stPlan.sName != sName)) {
        return false;
    }
    const uint32_t uiNow = stPlan.sName.empty() ? uiOfItsKind : stTally.uiDone;
    const bool bFails = stPlan.bForever ? uiNow >= stPlan.uiAt : uiNow == stPlan.uiAt;
    if (bFails) {
        ++stTally.uiFailed;
        astFailed.push_back({sName, stTally.uiDone});
    }
    return bFails;
}

void World::Plan(FaultPlan stNew) {
    stPlan = stNew;
    auiCounts = {};
    mapTallies.clear();
    astFailed.clear();
}

void World::Violation(std::string sText) {
    asViolations.push_back(std::move(sText));
}

void World::ClearRecords() {
    stPlatform.ClearRecords();
    stAllocs.ClearRecords();
}

std::vector<std::string> World::TakeComplaints() {
    std::vector<std::string> asAll = std::exchange(asViolations, {});
    for (const std::string &sText : stAllocs.TakeLive()) {
        asAll.push_back("leak: " + sText);
    }
    for (const auto &[uiId, sBytes] : stPlatform.mapBlocks) {
        if (!stPlatform.setKeptBlocks.contains(uiId)) {
            asAll.push_back("bulk block " + std::to_string(uiId) + " was not freed");
        }
    }
    std::erase_if(stPlatform.mapBlocks, [this](const auto &stBlock) {
        return stPlatform.setKeptBlocks.count(stBlock.first) == 0;
    });
    for (const std::string &sText : stPlatform.stDescriptors.TakeOpened()) {
        asAll.push_back(sText);
    }
    if (!stPlatform.stFiles.apstOpen.empty()) {
        asAll.push_back("files left open: " + std::to_string(stPlatform.stFiles.apstOpen.size()));
        stPlatform.stFiles.apstOpen.clear();
    }
    for (const std::string &sText : stPlatform.stShm.TakeLeft()) {
        asAll.push_back(sText);
    }
    if (stPlatform.iLocksHeld != 0) {
        asAll.push_back("locks held: " + std::to_string(stPlatform.iLocksHeld));
        stPlatform.iLocksHeld = 0;
    }
    for (const std::string &sText : stSecrets.TakeUnwiped()) {
        asAll.push_back(sText);
    }
    return asAll;
}

void World::ExpectClean(const std::string &sWhere) {
    for (const std::string &sText : TakeComplaints()) {
        ADD_FAILURE() << (sWhere.empty() ? "" : sWhere + ": ") << sText;
    }
}

void NoteJniMisuse(const std::string &sText) {
    World::Get().Violation(sText);
}

void NoteJniRelease(std::string_view sBytes) {
    World::Get().stSecrets.CheckShown(sBytes, "elements that went back to Java");
}

bool JniCallShallFail(const char *pcName) {
    return World::Get().Hit(Op::kJni, pcName);
}

void ResetBridge() {
    g_stJNIOsgiMid = OsgiMidState{};
    g_pvSspBasicHandle = nullptr;
    uiInitFlag = 0;
}

}  // namespace wap::test
