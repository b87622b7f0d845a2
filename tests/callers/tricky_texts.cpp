#include "callers/tricky_texts.h"

namespace wap::test {

std::string WithTricky(std::string sText, std::string_view sTricky) {
    for (size_t uiAt = sText.find(kHarmless); uiAt != std::string::npos;
         uiAt = sText.find(kHarmless, uiAt + kHarmless.size())) {
        sText.replace(uiAt, kHarmless.size(), sTricky);
    }
    return sText;
}

}  // namespace wap::test
