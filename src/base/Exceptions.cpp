#include "base/Exceptions.h"

std::string FormatMessage(const char* Format, std::initializer_list<std::string> Args) {
    std::string result;
    auto arg = Args.begin();
    for (const char* p = Format; *p; ++p) {
        if (p[0] == '%' && (p[1] == 'd' || p[1] == 's') && arg != Args.end()) {
            result += *arg++;
            ++p;
        } else {
            result += *p;
        }
    }
    return result;
}

std::string FormatIndexMessage(const char* Format, long long Index) {
    return FormatMessage(Format, {std::to_string(Index)});
}
