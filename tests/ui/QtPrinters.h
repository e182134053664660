#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// Readable Qt values in GoogleTest's failure messages; found by argument-dependent lookup.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '[' << list.join(", ").toStdString() << ']';
}
