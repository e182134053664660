#include "core/common/Localization.h"

#include <utility>

namespace voltaro {
namespace {

Translator& currentTranslator() {
    static Translator translator;
    return translator;
}

}  // namespace

void installTranslator(Translator translator) {
    currentTranslator() = std::move(translator);
}

std::string localized(std::string_view english) {
    const auto& translator = currentTranslator();
    return translator ? translator(english) : std::string(english);
}

std::string formatInteger(std::string_view format, long long value) {
    std::string text(format);
    const auto placeholder = text.find("%d");
    if (placeholder != std::string::npos) {
        text.replace(placeholder, 2, std::to_string(value));
    }
    return text;
}

}  // namespace voltaro
