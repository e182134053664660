#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace voltaro::ui {

// One Voltaro per user session. The first claims the application ID's name on the session bus
// and answers org.freedesktop.Application there; a later one asks it to activate instead.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    enum class Claim {
        // This process is the session's instance (also when there is no session bus to ask).
        first,
        // The running instance took over and this process can leave.
        handedOver,
        // Another instance holds the name but did not answer.
        unanswered,
    };

    SingleInstance(const QDBusConnection& bus, const QString& applicationId,
                   QObject* parent = nullptr);
    ~SingleInstance() override;

    Claim claim();
    // The object path org.freedesktop.Application expects for an application ID.
    static QString objectPathFor(const QString& applicationId);

  signals:
    // A later start asked this instance to come forward.
    void activationRequested();

  private:
    class Adaptor;

    QDBusConnection bus_;
    QString applicationId_;
    bool isRegistered_ = false;
};

}  // namespace voltaro::ui
