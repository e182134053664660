#pragma once

#include <QString>
#include <ostream>

// Lets GoogleTest print Qt texts readably in failure messages; found through the argument's
// namespace, so it lives in Qt's.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
