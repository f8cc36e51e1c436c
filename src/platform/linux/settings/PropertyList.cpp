#include "platform/linux/settings/PropertyList.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QXmlStreamReader>
#include <algorithm>

namespace platform::linux {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr int deepest = 100; // values are read and freed recursively

bool isBlank(std::string_view text) {
    return text.find_first_not_of(blanks) == std::string_view::npos;
}

QString fromUtf8(std::string_view bytes) {
    using Flag = QStringConverter::Flag; // a mark of the byte order may be part of a value
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    return decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

std::string line(int depth, const std::string& markup) {
    return std::string(static_cast<std::size_t>(depth), '\t') + markup + '\n';
}

std::string element(int depth, const std::string& name, const std::string& content) {
    return line(depth, '<' + name + '>' + content + "</" + name + '>');
}

std::string block(int depth, const std::string& name, const std::string& lines) {
    if (lines.empty()) return line(depth, '<' + name + "/>");
    return line(depth, '<' + name + '>') + lines + line(depth, "</" + name + '>');
}

bool isControl(QChar c) {
    return c.category() == QChar::Other_Control;
}

std::string escaped(std::string_view text) {
    QString result = fromUtf8(text);
    const auto isImpossible = [](QChar c) {
        return (c < u' ' && !QStringView(u"\t\r\n").contains(c)) || c > u'\xfffd';
    };
    std::replace_if(result.begin(), result.end(), isImpossible, QChar::ReplacementCharacter);
    result.replace(u'&', QLatin1String("&amp;")).replace(u'<', QLatin1String("&lt;"));
    // A bare carriage return would be read as a line feed.
    result.replace(u'>', QLatin1String("&gt;")).replace(u'\r', QLatin1String("&#13;"));
    return result.toStdString();
}

std::string keyElement(int depth, std::string_view key) {
    QString text = fromUtf8(key);
    std::replace_if(text.begin(), text.end(), isControl, QChar::ReplacementCharacter);
    return element(depth, "key", escaped(text.toStdString()));
}

std::string dataLines(int depth, const Data& data) {
    const auto* bytes = reinterpret_cast<const char*>(data.data());
    const std::string letters =
        QByteArray(bytes, static_cast<qsizetype>(data.size())).toBase64().toStdString();
    // Within 76 columns, of which a tab takes eight.
    const auto width = static_cast<std::size_t>(76 - 8 * std::min(depth, 8)) / 4 * 4;
    std::string lines = line(depth, "<data>");
    for (std::size_t at = 0; at < letters.size(); at += width)
        lines += line(depth, letters.substr(at, width));
    return lines + line(depth, "</data>");
}

std::string linesOf(int depth, const Value& value);

std::string linesOf(int depth, const ListEntry& entry) {
    return entry.value ? linesOf(depth, *entry.value) : entry.foreign;
}

template <class List>
std::string dictionaryLines(int depth, const List& list) {
    std::string lines;
    for (const auto& [key, value] : list)
        lines += keyElement(depth + 1, key) + linesOf(depth + 1, value);
    return block(depth, "dict", lines);
}

std::string linesOf(int depth, const Value& value) {
    const auto& held = value.held;
    if (const auto* flag = std::get_if<bool>(&held))
        return line(depth, *flag ? "<true/>" : "<false/>");
    if (const auto* text = std::get_if<std::string>(&held))
        return element(depth, "string", escaped(*text));
    if (const auto* number = std::get_if<std::int64_t>(&held))
        return element(depth, "integer", std::to_string(*number));
    if (const auto* data = std::get_if<Data>(&held)) return dataLines(depth, *data);
    return dictionaryLines(depth, std::get<Dictionary>(held));
}

/// The base that an integer is written in, as the format's other readers have it: 16 behind "0x".
/// None for a leading zero, which some take for the sign of an octal number.
std::optional<int> baseOf(QStringView number) {
    if (number.startsWith(u'+') || number.startsWith(u'-')) number = number.sliced(1);
    if (number.startsWith(u"0x", Qt::CaseInsensitive)) return 16;
    if (number.size() > 1 && number.startsWith(u'0')) return std::nullopt;
    return 10;
}

/// An error of its own is one of the stream's: after either nothing that was read counts.
class Reader {
  public:
    explicit Reader(const QString& text) : xml(text) {}

    ReadPropertyList document() {
        if (!begins(u"plist") || !begins(u"dict")) return {};
        auto list = members(1);
        // The ends of the list's element and of the text.
        if (nextElement() || nextElement() || xml.hasError()) return {};
        return {repeated ? Wholeness::repeatsKeys : Wholeness::whole, std::move(list)};
    }

  private:
    void refuse() { xml.raiseError(); }

    QString textBeforeTag() {
        for (QString text;;) {
            const auto token = xml.readNext();
            if (token == QXmlStreamReader::Characters) text += xml.text();
            // A user's own entities, and those that nobody has declared.
            else if ((token == QXmlStreamReader::DTD && xml.text().contains(u'[')) ||
                     token == QXmlStreamReader::EntityReference)
                refuse();
            if (xml.isStartElement() || xml.isEndElement() || xml.isEndDocument() || xml.hasError())
                return text;
        }
    }

    /// Whether an element begins next; otherwise the one around it ends.
    bool nextElement() {
        if (!isBlank(textBeforeTag().toStdString())) refuse();
        return xml.isStartElement() && !xml.hasError();
    }

    bool begins(QStringView name) { return nextElement() && xml.qualifiedName() == name; }

    QString content() {
        QString text = textBeforeTag();
        if (!xml.isEndElement()) refuse();
        return text;
    }

    /// The rest of a dictionary that has begun.
    PropertyList members(int depth) {
        PropertyList list;
        while (nextElement()) {
            if (xml.qualifiedName() != u"key") refuse();
            const QString key = content();
            // Nobody's doing: such a key is what an accident has left.
            if (std::any_of(key.begin(), key.end(), isControl)) refuse();
            if (!nextElement()) refuse();
            if (!list.insert_or_assign(key.toStdString(), entry(depth)).second) repeated = true;
        }
        return list;
    }

    ListEntry dictionary(int depth) {
        const PropertyList list = members(depth + 1);
        Value ours{Dictionary{}};
        auto& values = std::get<Dictionary>(ours.held);
        for (const auto& [key, member] : list)
            if (member.value) values.emplace(key, *member.value);
        if (values.size() == list.size()) return {std::move(ours), {}};
        return {std::nullopt, dictionaryLines(depth, list)};
    }

    ListEntry array(int depth) {
        std::string lines;
        while (nextElement())
            lines += linesOf(depth + 1, entry(depth + 1));
        return {std::nullopt, block(depth, "array", lines)};
    }

    /// The value whose element has begun, as one that stands at `depth`.
    ListEntry entry(int depth) {
        const std::string name = xml.qualifiedName().toString().toStdString();
        if (depth > deepest) refuse();
        if (xml.hasError()) return {};
        if (name == "dict") return dictionary(depth);
        if (name == "array") return array(depth);
        return scalar(depth, name, content());
    }

    ListEntry scalar(int depth, const std::string& name, const QString& text) {
        // libplist has written "+infinity", and years of fewer than four digits.
        static const QRegularExpression real(
            R"((?i)^\s*[+-]?((\d+\.?\d*|\.\d+)(e[+-]?\d+)?|inf(inity)?|nan)\s*$)");
        static const QRegularExpression date(
            R"(^\s*\d{1,4}-(0[1-9]|1[0-2])-(0[1-9]|[12]\d|3[01])T([01]\d|2[0-3])(:[0-5]\d){2}Z\s*$)");
        if (name == "string") return {Value{text.toStdString()}, {}};
        if (name == "data") return data(text);
        if ((name == "true" || name == "false") && isBlank(text.toStdString()))
            return {Value{name == "true"}, {}};
        bool isValid = (name == "real" && real.match(text).hasMatch()) ||
                       (name == "date" && date.match(text).hasMatch());
        if (const auto base = baseOf(text.trimmed()); name == "integer" && base) {
            const std::int64_t number = text.toLongLong(&isValid, *base);
            if (isValid) return {Value{number}, {}};
            text.toULongLong(&isValid, *base);
        }
        if (!isValid) refuse();
        return {std::nullopt, element(depth, name, text.trimmed().toStdString())};
    }

    ListEntry data(const QString& text) {
        const QByteArray letters = text.simplified().remove(u' ').toUtf8();
        const auto bytes =
            QByteArray::fromBase64Encoding(letters, QByteArray::AbortOnBase64DecodingErrors);
        if (!bytes || letters.size() % 4 != 0) refuse();
        return {Value{Data(bytes.decoded.begin(), bytes.decoded.end())}, {}};
    }

    QXmlStreamReader xml;
    bool repeated = false;
};

} // namespace

ReadPropertyList readPropertyList(std::string_view text) {
    if (constexpr std::string_view mark = "\xEF\xBB\xBF"; text.starts_with(mark))
        text.remove_prefix(mark.size());
    if (isBlank(text)) return {Wholeness::blank, {}};
    text.remove_prefix(text.find_first_not_of(blanks));
    const QString decoded = fromUtf8(text);
    return decoded.toStdString() == text ? Reader(decoded).document() : ReadPropertyList{};
}

std::string writePropertyList(const PropertyList& list) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           dictionaryLines(0, list) + "</plist>\n";
}

} // namespace platform::linux
