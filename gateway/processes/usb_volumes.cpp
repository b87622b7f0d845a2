#include "processes/usb_volumes.h"

#include <strings.h>

#include <algorithm>
#include <filesystem>

#include "framework/error.h"
#include "processes/processes.h"
#include "records/storage.h"

namespace wap::gateway {

namespace {

constexpr char kStorage[] = "storage";

bool IsName(const std::string &acName) {
    return !acName.empty() && acName.find('/') == std::string::npos;
}

}  // namespace

UsbVolumes::UsbVolumes(Home &stHome, const RuntimeDir &stDir)
    : m_stHome(stHome), m_acBase(std::filesystem::absolute(stDir.Path()).string()) {
    const JsonValue stList = stHome.Get(kStorage);
    for (json_object *pstVolume : Elements(stList.get())) {
        const std::filesystem::path acDirectory = TextOf(pstVolume, "directory");
        std::string acMade = m_acBase;
        if (acDirectory.is_relative()) {
            for (const auto &acPart : acDirectory) {
                acMade += "/" + acPart.string();
                MakeDirectory(acMade);
            }
        }
    }
}

std::vector<UsbVolume> UsbVolumes::List() const {
    std::vector<UsbVolume> astVolumes;
    const JsonValue stList = m_stHome.Get(kStorage);
    for (json_object *pstVolume : Elements(stList.get())) {
        astVolumes.push_back({TextOf(pstVolume, "name"), Absolute(TextOf(pstVolume, "directory"))});
    }
    return astVolumes;
}

void UsbVolumes::Add(const std::string &acName, const std::string &acDirectory) {
    constexpr size_t kPathMax = sizeof(DiscVolume::acMountPath) - 1;
    if (!IsName(acName)) {
        throw GatewayError("\"" + acName +
                           "\" is no name for a volume: give another one, without "
                           "slashes");
    }
    std::error_code stError;
    if (!acDirectory.starts_with('/') || !std::filesystem::is_directory(acDirectory, stError)) {
        throw GatewayError(acDirectory + " is no directory");
    }
    if (acDirectory.size() > kPathMax) {
        throw GatewayError("the path " + acDirectory + " is too long: at most " +
                           std::to_string(kPathMax) + " bytes");
    }
    HomeChange stChange(m_stHome);
    json_object *pstList = stChange.At(kStorage);
    const auto astVolumes = Elements(pstList);
    for (json_object *pstVolume : astVolumes) {
        if (Absolute(TextOf(pstVolume, "directory")) == acDirectory) {
            throw GatewayError(acDirectory + " is mounted already, as \"" +
                               TextOf(pstVolume, "name") + "\"");
        }
    }
    if (FindElement(pstList, "name", acName) != nullptr) {
        throw GatewayError("there is a volume \"" + acName + "\" already: give another name");
    }
    if (astVolumes.size() >= kDiscVolumesMax) {
        throw GatewayError("there are " + std::to_string(astVolumes.size()) +
                           " volumes already, and no more fit into an answer");
    }
    JsonValue stVolume = MakeObject();
    PutText(stVolume.get(), "name", acName);
    PutText(stVolume.get(), "directory", acDirectory);
    Append(pstList, std::move(stVolume));
    stChange.Commit();
}

void UsbVolumes::Remove(const std::string &acVolume) {
    HomeChange stChange(m_stHome);
    json_object *pstList = stChange.At(kStorage);
    const auto astVolumes = Elements(pstList);
    const auto stFound =
        std::find_if(astVolumes.begin(), astVolumes.end(), [&](json_object *pstVolume) {
            return strcasecmp(TextOf(pstVolume, "name").c_str(), acVolume.c_str()) == 0 ||
                   Absolute(TextOf(pstVolume, "directory")) == acVolume;
        });
    if (stFound == astVolumes.end()) {
        throw GatewayError("there is no volume \"" + acVolume + "\"");
    }
    TakeOut(pstList, *stFound);
    stChange.Commit();
}

std::string UsbVolumes::Absolute(const std::string &acDirectory) const {
    return acDirectory.starts_with('/') ? acDirectory : m_acBase + "/" + acDirectory;
}

}  // namespace wap::gateway
