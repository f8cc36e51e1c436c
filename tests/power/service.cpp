#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <cstdio>

// A service of the session that can be asked not to let the session become idle. Takes its name and
// path and writes what it is asked. "refuse" as a third argument: it answers with an error.

namespace {

class Service final : public QDBusVirtualObject {
  public:
    explicit Service(bool refusesAll) : refuses(refusesAll) {}

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        QStringList words{message.member()};
        for (const QVariant& argument : message.arguments())
            words << QString(argument.typeName()) + ":" + argument.toString();
        std::printf("%s\n", qPrintable(words.join(' ')));
        (void)std::fflush(stdout);
        if (refuses)
            bus.send(message.createErrorReply(QDBusError::AccessDenied, "not today"));
        else if (message.member() == "Inhibit")
            bus.send(message.createReply(++given));
        else
            bus.send(message.createReply());
        return true;
    }

  private:
    bool refuses;
    unsigned given = 40;
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc < 3) return 2;
    Service service(argc > 3);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(argv[2], &service) || !bus.registerService(argv[1])) return 1;
    std::printf("ready\n");
    (void)std::fflush(stdout);
    return QCoreApplication::exec();
}
