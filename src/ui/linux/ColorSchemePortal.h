#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <optional>

namespace voltaro::ui {

// The desktop's light or dark preference as the XDG desktop portal tells it. Asked without
// waiting; unknown until the portal answers, and where it never does or has no preference.
class ColorSchemePortal : public QObject {
    Q_OBJECT

  public:
    explicit ColorSchemePortal(const QDBusConnection& bus, QObject* parent = nullptr);

    std::optional<bool> prefersDark() const { return prefersDark_; }

  signals:
    void changed();

  private slots:
    void settingChanged(const QDBusMessage& message);

  private:
    void take(const QVariant& value);

    std::optional<bool> prefersDark_;
};

}  // namespace voltaro::ui
