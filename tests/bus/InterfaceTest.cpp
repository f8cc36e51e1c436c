#include "bus/Stage.h"

#include <QFile>
#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <set>

// What is described is what the program has.

namespace desktop {
namespace {

/// Each member of the interface as a line, such as "method Free(in u seconds)".
std::set<std::string> membersIn(const QByteArray& xml) {
    std::set<std::string> members;
    QXmlStreamReader reader(xml);
    bool inside = false;
    std::string open;
    while (!reader.atEnd()) {
        reader.readNext();
        const auto tag = reader.name().toString().toStdString();
        const auto attribute = [&](const char* name) {
            return reader.attributes().value(QLatin1String(name)).toString().toStdString();
        };
        if (reader.isStartElement() && tag == "interface")
            inside = attribute("name") == "com.tamberlo.Product1";
        if (!inside) continue;
        if (reader.isStartElement()) {
            if (tag == "property")
                open = "property " + attribute("type") + " " + attribute("name") + " " +
                       attribute("access");
            else if (tag == "method" || tag == "signal")
                open = tag + " " + attribute("name");
            else if (tag == "arg")
                open += " (" + attribute("direction") + " " + attribute("type") + " " +
                        attribute("name") + ")";
            else if (tag == "annotation")
                open += " [" + attribute("name") + "=" + attribute("value") + "]";
        } else if (reader.isEndElement()) {
            if (tag == "property" || tag == "method" || tag == "signal") members.insert(open);
            if (tag == "interface") inside = false;
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return members;
}

TEST(Interface, IsWhatItsDescriptionSaysInEveryMemberAndSignature) {
    QFile file(INTERFACE);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto described = membersIn(file.readAll());
    EXPECT_GT(described.size(), 15U);
    BusStage stage;
    stage.start();
    const auto reply = stage.call("Introspect", {}, "org.freedesktop.DBus.Introspectable");
    const char* xml = nullptr;
    ASSERT_TRUE(reply && sd_bus_message_read(reply.get(), "s", &xml) > 0) << stage.errorText;
    EXPECT_THAT(membersIn(xml), testing::ContainerEq(described));
}

} // namespace
} // namespace desktop
