#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace voltaro::ui {

// A small icon theme folder of our own, for panels that take an icon name and a theme path
// rather than pixels: <root>/hicolor/scalable/status/<name>.svg beside an index.theme.
class TrayIconFolder {
  public:
    explicit TrayIconFolder(QString themePath);

    // $XDG_RUNTIME_DIR/voltaro/icons; none without a runtime directory, since icons left
    // elsewhere would outlive the session.
    static std::optional<TrayIconFolder> inRuntimeDirectory();

    QString themePath() const { return themePath_; }
    QString iconPath(const QString& name) const;

    // Replaces the icon in one step (written aside, then renamed), so a panel reading it never
    // sees half a file; an icon already as given is left alone. False when it cannot be written.
    bool write(const QString& name, const QByteArray& svg) const;

  private:
    QString themePath_;
};

}  // namespace voltaro::ui
