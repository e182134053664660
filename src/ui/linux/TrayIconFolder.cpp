#include "ui/linux/TrayIconFolder.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <utility>

namespace voltaro::ui {
namespace {

// Used only where the system has no hicolor theme: the first index.theme found names the folders.
constexpr char indexTheme[] =
    "[Icon Theme]\nName=Hicolor\nDirectories=scalable/status\n\n"
    "[scalable/status]\nSize=22\nMinSize=8\nMaxSize=512\nType=Scalable\nContext=Status\n";

QString statusFolder(const QString& themePath) {
    return themePath + QStringLiteral("/hicolor/scalable/status");
}

bool replaceIfDifferent(const QString& path, const QByteArray& content) {
    QFile existing(path);
    if (existing.open(QIODevice::ReadOnly) && existing.readAll() == content) {
        return true;
    }
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.commit();
}

}  // namespace

TrayIconFolder::TrayIconFolder(QString themePath) : themePath_(std::move(themePath)) {}

std::optional<TrayIconFolder> TrayIconFolder::inRuntimeDirectory() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (runtime.isEmpty() || !QDir(runtime).exists()) {
        return std::nullopt;
    }
    return TrayIconFolder(runtime + QStringLiteral("/voltaro/icons"));
}

QString TrayIconFolder::iconPath(const QString& name) const {
    return statusFolder(themePath_) + '/' + name + QStringLiteral(".svg");
}

bool TrayIconFolder::write(const QString& name, const QByteArray& svg) const {
    if (!QDir().mkpath(statusFolder(themePath_))) {
        return false;
    }
    return replaceIfDifferent(themePath_ + QStringLiteral("/hicolor/index.theme"),
                              QByteArray(indexTheme)) &&
           replaceIfDifferent(iconPath(name), svg);
}

}  // namespace voltaro::ui
