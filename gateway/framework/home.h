// The part of the home that one process owns: values under dotted paths such as "device.vendor".
#ifndef WAP_GATEWAY_FRAMEWORK_HOME_H
#define WAP_GATEWAY_FRAMEWORK_HOME_H

#include <stddef.h>
#include <stdint.h>

#include <mutex>
#include <string>
#include <string_view>

#include "framework/json_value.h"
#include "framework/process_list.h"
#include "framework/runtime_dir.h"

namespace wap::gateway {

/// Puts a text into a record's field: what does not fit is cut off, at the end of a character of
/// UTF-8, and the rest of the field is zero.
void PutField(char *pcField, size_t uiSize, std::string_view pcText);

template <size_t kSize>
void PutField(char (&acField)[kSize], std::string_view pcText) {
    PutField(acField, kSize, pcText);
}

/// The values of one process, on disk and in memory. Any number of threads may use it.
class Home {
  public:
    /// Loads the process's state file; values that it lacks, all of them at first, come from the
    /// home file. Writes the state file when that changed it.
    /// Throws GatewayError when a file is damaged or a section is in neither of them.
    Home(const RuntimeDir &stDir, const ProcessInfo &stInfo);

    /// Changes one value. The text is taken as the value's present type demands. When this returns,
    /// the change is on disk and the next request sees it. Throws GatewayError, and then nothing
    /// has changed: unknown path, a path that names a group, a text of the wrong type.
    void Set(std::string_view pcPath, std::string_view pcText);

    /// A copy of a value or of a group of values. An empty path names everything that the process
    /// owns. Throws GatewayError for an unknown path.
    JsonValue Get(std::string_view pcPath) const;

  private:
    friend class HomeReader;
    friend class HomeChange;

    std::string m_acStateFile;
    mutable std::mutex m_stMutex;
    JsonValue m_stRoot;
};

/// A consistent view of a home: while one exists, nobody changes a value. Keep it short, and send
/// no request meanwhile.
class HomeReader {
  public:
    explicit HomeReader(const Home &stHome) : m_stHome(stHome), m_stLock(stHome.m_stMutex) {}

    /// Puts a text into a record's field, see PutField. Throws GatewayError when there is no text.
    template <size_t kSize>
    void Text(std::string_view pcPath, char (&acField)[kSize]) const {
        PutField(acField, Text(pcPath));
    }
    /// The value of that path, borrowed as long as the reader lives. Throws GatewayError.
    json_object *At(std::string_view pcPath) const;
    /// The text of that path, valid as long as the reader lives.
    std::string_view Text(std::string_view pcPath) const;
    /// The number of that path. Throws GatewayError when there is none from 0 to 2^32-1.
    uint32_t Number(std::string_view pcPath) const;

  private:
    const Home &m_stHome;
    std::scoped_lock<std::mutex> m_stLock;
};

/// A change of a home: the values as they shall be, in memory and on disk after Commit and not
/// before. While one exists, nobody else reads or changes a value. Keep it short, and send no
/// request meanwhile.
class HomeChange {
  public:
    explicit HomeChange(Home &stHome);

    /// The value of that path, borrowed until Commit, to be changed. Throws GatewayError.
    json_object *At(std::string_view pcPath) const;
    /// Makes the change. Throws GatewayError when it can't be stored, and then nothing has changed.
    void Commit();

  private:
    Home &m_stHome;
    std::scoped_lock<std::mutex> m_stLock;
    JsonValue m_stRoot;
};

/// Gives a single value another content of the same type, read from a text. Throws GatewayError
/// with pcPath in it when the text does not fit the type.
void Assign(json_object *pstValue, std::string_view pcPath, std::string_view pcText);

}  // namespace wap::gateway

#endif
