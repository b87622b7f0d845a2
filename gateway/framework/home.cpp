#include "framework/home.h"

#include <string.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <new>
#include <vector>

#include "framework/error.h"
#include "framework/files.h"

namespace wap::gateway {

namespace {

constexpr int64_t kMaxNumber = UINT32_MAX;

std::string Quoted(std::string_view pcText) {
    return "\"" + std::string(pcText) + "\"";
}

std::vector<std::string> Split(std::string_view pcPath) {
    std::vector<std::string> astNames;
    for (;;) {
        const size_t uiDot = pcPath.find('.');
        astNames.emplace_back(pcPath.substr(0, uiDot));
        if (uiDot == std::string_view::npos) {
            return astNames;
        }
        pcPath.remove_prefix(uiDot + 1);
    }
}

/// Follows a path from a value; list elements go by their index. Throws GatewayError that says how
/// far the path led and what there is.
json_object *Find(json_object *pstFrom, std::string_view pcPath) {
    if (pcPath.empty()) {
        return pstFrom;
    }
    json_object *pstValue = pstFrom;
    std::string acDone;
    for (const std::string &acName : Split(pcPath)) {
        const std::string acWhere = acDone.empty() ? "the home" : acDone;
        if (json_object_is_type(pstValue, json_type_object)) {
            json_object *pstNext = FindMember(pstValue, acName.c_str());
            if (pstNext == nullptr) {
                throw GatewayError("there is no value " + Quoted(pcPath) + ": " + acWhere +
                                   " has no " + Quoted(acName) + "; it has " + NamesIn(pstValue));
            }
            pstValue = pstNext;
        } else if (json_object_is_type(pstValue, json_type_array)) {
            const size_t uiCount = json_object_array_length(pstValue);
            size_t uiIndex = 0;
            const char *pcEnd = acName.data() + acName.size();
            const auto stRead = std::from_chars(acName.data(), pcEnd, uiIndex);
            if (stRead.ec != std::errc() || stRead.ptr != pcEnd || uiIndex >= uiCount) {
                throw GatewayError("there is no value " + Quoted(pcPath) + ": " + acWhere +
                                   " is a list of " + std::to_string(uiCount) +
                                   ", name one by its index from 0");
            }
            pstValue = json_object_array_get_idx(pstValue, uiIndex);
        } else {
            throw GatewayError("there is no value " + Quoted(pcPath) + ": " + acWhere +
                               " is a single value");
        }
        acDone += (acDone.empty() ? "" : ".") + acName;
    }
    return pstValue;
}

template <class Number>
bool ReadWhole(std::string_view pcText, Number &number) {
    const char *pcEnd = pcText.data() + pcText.size();
    const auto stRead = std::from_chars(pcText.data(), pcEnd, number);
    return stRead.ec == std::errc() && stRead.ptr == pcEnd;
}

/// Adds the members that an object lacks, at every depth; true when there were any.
bool FillIn(json_object *pstTarget, json_object *pstSource) {
    bool bChanged = false;
    json_object_object_foreach(pstSource, pcKey, pstMember) {
        json_object *pstPresent = nullptr;
        if (!json_object_object_get_ex(pstTarget, pcKey, &pstPresent)) {
            PutMember(pstTarget, pcKey, Copy(pstMember));
            bChanged = true;
        } else if (json_object_is_type(pstPresent, json_type_object) &&
                   json_object_is_type(pstMember, json_type_object)) {
            bChanged = FillIn(pstPresent, pstMember) || bChanged;
        }
    }
    return bChanged;
}

JsonValue ReadObject(const std::string &acPath) {
    const std::optional<std::string> acText = ReadTextFile(acPath);
    if (!acText) {
        return MakeObject();
    }
    JsonValue stRoot = ParseJson(*acText, acPath);
    if (!json_object_is_type(stRoot.get(), json_type_object)) {
        throw GatewayError(acPath + " holds no JSON object");
    }
    return stRoot;
}

void Store(json_object *pstRoot, const std::string &acPath) {
    WriteTextFile(acPath, PrintJson(pstRoot, true) + "\n");
}

}  // namespace

void Assign(json_object *pstValue, std::string_view pcPath, std::string_view pcText) {
    const std::string acPath(pcPath);
    int iDone = 0;
    int64_t iNumber = 0;
    double dNumber = 0;
    switch (json_object_get_type(pstValue)) {
        case json_type_string:
            iDone = json_object_set_string_len(pstValue, pcText.data(),
                                               static_cast<int>(pcText.size()));
            break;
        case json_type_int:
            if (!ReadWhole(pcText, iNumber) || iNumber < 0 || iNumber > kMaxNumber) {
                throw GatewayError(acPath + " is a whole number from 0 to " +
                                   std::to_string(kMaxNumber) + ", not " + Quoted(pcText));
            }
            iDone = json_object_set_int64(pstValue, iNumber);
            break;
        case json_type_double:
            if (!ReadWhole(pcText, dNumber) || !std::isfinite(dNumber)) {
                throw GatewayError(acPath + " is a number such as -20.5, not " + Quoted(pcText));
            }
            iDone = json_object_set_double(pstValue, dNumber);
            break;
        case json_type_boolean:
            if (pcText != "true" && pcText != "false") {
                throw GatewayError(acPath + " is true or false, not " + Quoted(pcText));
            }
            iDone = json_object_set_boolean(pstValue, pcText == "true");
            break;
        default:
            throw GatewayError(acPath + " is no single value: name one of those in it");
    }
    if (iDone != 1) {
        throw std::bad_alloc();
    }
}

void PutField(char *pcField, size_t uiSize, std::string_view pcText) {
    if (uiSize == 0) {
        return;
    }
    size_t uiLength = std::min(pcText.size(), uiSize - 1);
    if (uiLength < pcText.size()) {
        // Back to the start of the character that the cut would split.
        while (uiLength > 0 && (static_cast<unsigned char>(pcText[uiLength]) & 0xC0) == 0x80) {
            --uiLength;
        }
    }
    memset(pcField, 0, uiSize);
    memcpy(pcField, pcText.data(), uiLength);
}

Home::Home(const RuntimeDir &stDir, const ProcessInfo &stInfo)
    : m_acStateFile(stDir.StateFile(stInfo.pcName)), m_stRoot(ReadObject(m_acStateFile)) {
    RemoveHalfWritten(m_acStateFile);
    const JsonValue stShipped = ReadObject(stDir.HomeFile());
    const JsonValue stOwned = MakeObject();
    for (const std::string_view pcSection : stInfo.astSections) {
        const std::string acSection(pcSection);
        json_object *pstSection = FindMember(stShipped.get(), acSection.c_str());
        if (pstSection != nullptr) {
            PutMember(stOwned.get(), acSection.c_str(), Copy(pstSection));
        } else if (!acSection.empty() && FindMember(m_stRoot.get(), acSection.c_str()) == nullptr) {
            throw GatewayError("the home has no section " + Quoted(acSection) + ", neither in " +
                               m_acStateFile + " nor in " + stDir.HomeFile());
        }
    }
    if (FillIn(m_stRoot.get(), stOwned.get())) {
        Store(m_stRoot.get(), m_acStateFile);
    }
}

void Home::Set(std::string_view pcPath, std::string_view pcText) {
    HomeChange stChange(*this);
    Assign(stChange.At(pcPath), pcPath, pcText);
    stChange.Commit();
}

JsonValue Home::Get(std::string_view pcPath) const {
    const std::scoped_lock stLock(m_stMutex);
    return Copy(Find(m_stRoot.get(), pcPath));
}

HomeChange::HomeChange(Home &stHome)
    : m_stHome(stHome), m_stLock(stHome.m_stMutex), m_stRoot(Copy(stHome.m_stRoot.get())) {}

json_object *HomeChange::At(std::string_view pcPath) const {
    return Find(m_stRoot.get(), pcPath);
}

void HomeChange::Commit() {
    // On disk first: when that fails, the values stay what they are, there and here.
    Store(m_stRoot.get(), m_stHome.m_acStateFile);
    m_stHome.m_stRoot = std::move(m_stRoot);
}

json_object *HomeReader::At(std::string_view pcPath) const {
    return Find(m_stHome.m_stRoot.get(), pcPath);
}

std::string_view HomeReader::Text(std::string_view pcPath) const {
    json_object *pstValue = At(pcPath);
    if (!json_object_is_type(pstValue, json_type_string)) {
        throw GatewayError(std::string(pcPath) + " is no text");
    }
    return {json_object_get_string(pstValue),
            static_cast<size_t>(json_object_get_string_len(pstValue))};
}

uint32_t HomeReader::Number(std::string_view pcPath) const {
    json_object *pstValue = At(pcPath);
    const int64_t iNumber =
        json_object_is_type(pstValue, json_type_int) ? json_object_get_int64(pstValue) : -1;
    if (iNumber < 0 || iNumber > kMaxNumber) {
        throw GatewayError(std::string(pcPath) + " is no number from 0 to 4294967295");
    }
    return static_cast<uint32_t>(iNumber);
}

}  // namespace wap::gateway
