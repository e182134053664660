#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace voltaro {

// Looks up the translation of a fixed English text. The English text is both the key and the
// fallback; the ui installs a translator, until then every text is its own translation.
using Translator = std::function<std::string(std::string_view english)>;

void installTranslator(Translator translator);
std::string localized(std::string_view english);

// Fills the first "%d" of a looked-up format with the number.
std::string formatInteger(std::string_view format, long long value);

}  // namespace voltaro
