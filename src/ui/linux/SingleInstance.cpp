#include "ui/linux/SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

namespace voltaro::ui {
namespace {

constexpr const char* applicationInterface = "org.freedesktop.Application";
// Long enough for a busy instance, short enough that a hung one does not hold up a launcher.
constexpr int answerMilliseconds = 5000;

}  // namespace

// The interface launchers use for D-Bus-activatable applications: every way in comes forward.
class SingleInstance::Adaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit Adaptor(SingleInstance* owner) : QDBusAbstractAdaptor(owner), owner_(owner) {}

  public slots:
    void Activate(const QVariantMap&) { emit owner_->activationRequested(); }
    void Open(const QStringList&, const QVariantMap&) { emit owner_->activationRequested(); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
        emit owner_->activationRequested();
    }

  private:
    SingleInstance* owner_;
};

SingleInstance::SingleInstance(const QDBusConnection& bus, const QString& applicationId,
                               QObject* parent)
    : QObject(parent), bus_(bus), applicationId_(applicationId) {
    new Adaptor(this);
}

SingleInstance::~SingleInstance() {
    if (isRegistered_) {
        bus_.unregisterService(applicationId_);
        bus_.unregisterObject(objectPathFor(applicationId_));
    }
}

QString SingleInstance::objectPathFor(const QString& applicationId) {
    QString path = QLatin1Char('/') + applicationId;
    path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    return path;
}

SingleInstance::Claim SingleInstance::claim() {
    if (!bus_.isConnected() || bus_.interface() == nullptr) {
        return Claim::first;
    }
    const QString path = objectPathFor(applicationId_);
    // Exported before the name is taken, so a start racing this one finds someone to answer.
    if (!bus_.registerObject(path, this, QDBusConnection::ExportAdaptors)) {
        return Claim::first;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(applicationId_,
                                          QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        isRegistered_ = true;
        return Claim::first;
    }
    bus_.unregisterObject(path);
    QDBusMessage call = QDBusMessage::createMethodCall(applicationId_, path,
                                                       QString::fromLatin1(applicationInterface),
                                                       QStringLiteral("Activate"));
    call << QVariantMap();
    const QDBusMessage answer = bus_.call(call, QDBus::Block, answerMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage ? Claim::handedOver : Claim::unanswered;
}

}  // namespace voltaro::ui

#include "SingleInstance.moc"
