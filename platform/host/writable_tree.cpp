#include "writable_tree.h"

#include <cstring>

#include "host_util.h"

namespace wap::host {

namespace {

constexpr char kTree[] = "/var/osgi/";
constexpr size_t kTreeLength = sizeof kTree - 1;

bool LeadsIntoTree(const char *pcPath) {
    return strncmp(pcPath, kTree, kTreeLength) == 0;
}

/** What fails here fails again, and is reported, when the file is opened. */
void MakeTree() {
    ErrnoKeeper stKeep;
    (void)MakeDirectory(RuntimePath("var"));
    (void)MakeDirectory(RuntimePath("var/osgi"));
}

/** A text as one word of a shell, whatever is in it. */
std::string Quoted(const std::string &strText) {
    std::string strQuoted = "'";
    for (const char cChar : strText) {
        if (cChar == '\'') {
            strQuoted += "'\\''";
        } else {
            strQuoted += cChar;
        }
    }
    return strQuoted + "'";
}

/** Follows a command line as a shell reads it, as far as its quotes and backslashes. A substitution
 *  within double quotes, $( ) or backticks, begins anew for the shell but not here: a path in it
 *  comes out wrong. */
class ShellReader {
  public:
    /** Whether a path can begin with the next character. */
    bool AtPathStart() const { return bStart; }
    /** The open quote, or an empty text. */
    std::string OpenQuote() const { return cQuote == '\0' ? "" : std::string(1, cQuote); }

    void Take(char cChar) {
        if (bEscaped) {
            bEscaped = false;
            bStart = false;
        } else if (cChar == '\\' && cQuote != '\'') {
            bEscaped = true;
        } else if (cQuote != '\0' ? cChar == cQuote : cChar == '\'' || cChar == '"') {
            // A quote is no part of the path: what begins may begin behind it.
            cQuote = cQuote == '\0' ? cChar : '\0';
        } else {
            bStart = strchr(" \t\n=:,<>|&;(){`", cChar) != nullptr;
        }
    }

  private:
    char cQuote = '\0';
    bool bEscaped = false;
    bool bStart = true;
};

}  // namespace

std::string LocalPath(const char *pcPath) {
    const std::string strDir = RuntimeDir();
    if (strDir.empty() || !LeadsIntoTree(pcPath)) {
        return pcPath;
    }
    MakeTree();
    return strDir + pcPath;
}

std::string LocalCommand(const char *pcCmd) {
    const std::string strDir = RuntimeDir();
    std::string strLocal;
    ShellReader stReader;
    bool bInTree = false;
    for (const char *pcAt = pcCmd; *pcAt != '\0'; pcAt++) {
        if (!strDir.empty() && stReader.AtPathStart() && LeadsIntoTree(pcAt)) {
            // Quoted on its own, so an open quote ends before it and goes on behind it.
            const std::string strQuote = stReader.OpenQuote();
            strLocal.append(strQuote).append(Quoted(strDir)).append(strQuote);
            bInTree = true;
        }
        stReader.Take(*pcAt);
        strLocal += *pcAt;
    }
    if (bInTree) {
        MakeTree();
    }
    return strLocal;
}

}  // namespace wap::host
