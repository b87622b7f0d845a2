#include "common/json_parse.h"

#include <json-c/arraylist.h>
#include <json-c/json_c_version.h>
#include <json-c/json_tokener.h>
#include <json-c/json_visit.h>
#include <json-c/linkhash.h>
#include <json-c/printbuf.h>
#include <limits.h>
#include <locale.h>
#include <string.h>

#include "common/json_plain.h"

namespace wap {

namespace {

/// More than json-c adds to a text that it collects.
constexpr size_t kCollectorSpare = 16;

/// The C locale for the calling thread. json-c switches to it anyway, with a copy of the caller's
/// locale, and crashes when there is no memory for the copy. Where the caller's is the C locale
/// itself, nothing needs to be copied.
class PlainLocale {
  public:
    PlainLocale(const PlainLocale &) = delete;
    PlainLocale &operator=(const PlainLocale &) = delete;
#ifdef LC_ALL_MASK
    PlainLocale() : m_stOwn(newlocale(LC_ALL_MASK, "C", nullptr)) {
        if (m_stOwn != nullptr) {
            m_stBefore = uselocale(m_stOwn);
        }
    }
    ~PlainLocale() {
        if (m_stOwn != nullptr) {
            (void)uselocale(m_stBefore);
            freelocale(m_stOwn);
        }
    }
    explicit operator bool() const {
        return m_stOwn != nullptr;
    }

  private:
    locale_t m_stOwn;
    locale_t m_stBefore = nullptr;
#else
    // json-c copies no locales where threads have none.
    PlainLocale() = default;
    explicit operator bool() const {
        return true;
    }
#endif
};

/// json-c's tokener.
class OwnTokener {
  public:
    explicit OwnTokener(Grammar eGrammar) : m_pstTokener(json_tokener_new()) {
        if (m_pstTokener != nullptr && eGrammar == Grammar::kStrict) {
            json_tokener_set_flags(m_pstTokener, JSON_TOKENER_STRICT);
        }
    }
    OwnTokener(const OwnTokener &) = delete;
    OwnTokener &operator=(const OwnTokener &) = delete;
    ~OwnTokener() {
        if (m_pstTokener != nullptr) {
            json_tokener_free(m_pstTokener);
        }
    }
    json_tokener *Lend() const { return m_pstTokener; }
    explicit operator bool() const { return m_pstTokener != nullptr; }

  private:
    json_tokener *m_pstTokener;
};

/// Parses so that a lack of memory is survived, which json-c's tokener does not in four places:
/// - What it collects of a text is cut when its buffer can't grow. So the buffer is made large
///   enough for the whole text before; that way it also leaves no copies behind.
/// - A member name that it could not copy makes it crash when the value has been read. So it is fed
///   up to each colon, and the name looked at, before it goes on.
/// - A member that the object has no memory for gets lost. So the member is put there before, and
///   the tokener finds it.
/// - An element that its array can't grow for gets lost, and the text ends there without a word. So
///   it is fed up to each comma, and the array has room before the element comes.
/// Names, members and elements need a look into the tokener, whose parts its header shows but asks
/// to leave alone: json-c offers no other way.
class Tokener {
  public:
    Tokener(const OwnTokener &stTokener, Secrecy eSecrecy)
        : m_pstTokener(stTokener.Lend()), m_eSecrecy(eSecrecy) {}
    Tokener(const Tokener &) = delete;
    Tokener &operator=(const Tokener &) = delete;
    ~Tokener() {
        if (m_eSecrecy == Secrecy::kSecret) {
            WipeRemains();
        }
        LetGo();
    }

    json_object *Parse(const char *pcText) {
        json_object *pstRoot = MakeRoom(strlen(pcText)) ? ParseByStops(pcText) : nullptr;
        if (pstRoot != nullptr) {
            LetGo();
        }
        return pstRoot;
    }

  private:
    bool MakeRoom(size_t ulLength) {
        if (ulLength > INT_MAX - kCollectorSpare ||
            printbuf_memset(m_pstTokener->pb, 0, 0, static_cast<int>(ulLength + kCollectorSpare)) !=
                0) {
            return false;
        }
        printbuf_reset(m_pstTokener->pb);
        return true;
    }

    json_object *ParseByStops(const char *pcAt) {
        for (const char *pcStop = FindStop(pcAt); *pcStop != '\0'; pcStop = FindStop(pcAt)) {
            const auto iLength = static_cast<int>(pcStop + 1 - pcAt);
            json_object *pstRoot = json_tokener_parse_ex(m_pstTokener, pcAt, iLength);
            if (json_tokener_get_error(m_pstTokener) != json_tokener_continue) {
                return pstRoot;
            }
            if (m_eSecrecy == Secrecy::kSecret) {
                Hold();
            }
            if (!PrepareMember() || !PrepareElement()) {
                return nullptr;
            }
            pcAt = pcStop + 1;
        }
        return json_tokener_parse_ex(m_pstTokener, pcAt, -1);
    }

    /// The next place to look at what is there so far.
    static const char *FindStop(const char *pcAt) { return pcAt + strcspn(pcAt, ":,"); }

    /// After a colon: when it ended a member name, that name and a place for its value are there.
    bool PrepareMember() {
        const json_tokener_srec &stLevel = m_pstTokener->stack[m_pstTokener->depth];
        if (stLevel.saved_state != json_tokener_state_object_value) {
            return true;
        }
        if (stLevel.obj_field_name == nullptr) {
            return false;
        }
        json_object *pstEarlier = nullptr;
        if (json_object_object_get_ex(stLevel.current, stLevel.obj_field_name, &pstEarlier) != 0) {
            // The value that comes now will replace it.
            if (m_eSecrecy == Secrecy::kSecret) {
                WipeTexts(pstEarlier);
            }
            return true;
        }
        return GrowTable(json_object_get_object(stLevel.current)) &&
               json_object_object_add(stLevel.current, stLevel.obj_field_name, nullptr) == 0;
    }

    /// After a comma: when it stands behind an element, there is room for the next one.
    bool PrepareElement() const {
        const json_tokener_srec &stLevel = m_pstTokener->stack[m_pstTokener->depth];
        if (stLevel.saved_state != json_tokener_state_array_after_sep) {
            return true;
        }
        const array_list *pstList = json_object_get_array(stLevel.current);
        // It grows when it has room for one alone. The call that sets how much it has besides its
        // elements is named after its other use.
        return pstList->length + 1 < pstList->size ||
               json_object_array_shrink(stLevel.current, static_cast<int>(pstList->length)) == 0;
    }

    /// Makes room for one more member, by json-c's rule. It does so itself, but when it fails there
    /// it forgets the copy of the name.
    static bool GrowTable(lh_table *pstTable) {
        return pstTable->count < pstTable->size * LH_LOAD_FACTOR ||
               (pstTable->size <= INT_MAX / 2 &&
                lh_table_resize(pstTable, pstTable->size * 2) == 0);
    }

    /// Takes a share in what the levels have so far: json-c lets go of it without asking when it
    /// has no memory for a value. What a level had before is part of the level above it by now.
    void Hold() {
        for (int i = 0; i < kLevels; ++i) {
            json_object *pstNow =
                i <= m_pstTokener->depth ? m_pstTokener->stack[i].current : nullptr;
            if (pstNow != m_apstHeld[i]) {
                (void)json_object_put(m_apstHeld[i]);
                m_apstHeld[i] = json_object_get(pstNow);
            }
        }
    }
    void LetGo() {
        for (json_object *&pstHeld : m_apstHeld) {
            (void)json_object_put(pstHeld);
            pstHeld = nullptr;
        }
    }

    /// Of a text that did not parse, the values that it began with are still here.
    void WipeRemains() {
        for (int i = 0; i <= m_pstTokener->depth; ++i) {
            WipeTexts(m_pstTokener->stack[i].current);
        }
        for (json_object *pstHeld : m_apstHeld) {
            WipeTexts(pstHeld);
        }
        Wipe(m_pstTokener->pb->buf, static_cast<uint32_t>(m_pstTokener->pb->size));
    }

    static constexpr int kLevels = JSON_TOKENER_DEFAULT_DEPTH;

    json_tokener *m_pstTokener;
    Secrecy m_eSecrecy;
    json_object *m_apstHeld[kLevels] = {};
};

int WipeText(json_object *pstValue, int iFlags, json_object *, const char *, size_t *, void *) {
    if (iFlags == 0 && json_object_is_type(pstValue, json_type_string) != 0) {
        // The value's own memory, lent as constant.
        Wipe(const_cast<char *>(json_object_get_string(pstValue)),
             static_cast<uint32_t>(json_object_get_string_len(pstValue)));
    }
    return JSON_C_VISIT_RETURN_CONTINUE;
}

}  // namespace

json_object *ParseJson(SourceSpot stSpot, const char *pcText, Grammar eGrammar, Secrecy eSecrecy) {
    if (pcText == nullptr) {
        RecordFault(stSpot, kJsonErrNull);
        return nullptr;
    }
    // cppcheck-suppress unassignedVariable ; what it does, it does while it is there
    const PlainLocale stLocale;
    const OwnTokener stTokener(eGrammar);
    if (!stLocale || !stTokener) {
        RecordFault(stSpot, kJsonErrNull);
        return nullptr;
    }
    // The tokener's parts are where this library's build found them in the same version only.
    json_object *pstRoot = json_c_version_num() == JSON_C_VERSION_NUM
                               ? Tokener(stTokener, eSecrecy).Parse(pcText)
                               : ParsePlainly(stTokener.Lend(), pcText, eSecrecy);
    if (pstRoot == nullptr) {
        RecordFault(stSpot, kJsonErrObject,
                    static_cast<uint32_t>(json_tokener_get_error(stTokener.Lend())));
    }
    return pstRoot;
}

void WipeTexts(json_object *pstRoot) {
    if (pstRoot != nullptr) {
        (void)json_c_visit(pstRoot, 0, WipeText, nullptr);
    }
}

}  // namespace wap
