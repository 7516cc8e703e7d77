#include "config/settings.h"

#include "config/applicationrecord.h"
#include "config/xmlstore.h"

#include <QCoreApplication>
#include <QObject>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array s_attributes{
    L"Caption",         L"ShowCaption",   L"HintString",    L"NormalImg",       L"OverImg",
    L"DownImg",         L"DisableImg",    L"MaskImg",       L"NormalCursor",    L"DoingCursor",
    L"FontColorNormal", L"FontColorOver", L"FontColorDown", L"FontColorDisable"};
constexpr int s_firstPath = 4;
constexpr int s_lastPath = 10;

QString configPath(const QString &key) { return u"Galeway\\Config\\"_s + key.trimmed(); }

std::function<void()> s_handler;

// No value if the attribute is missing.
std::optional<QString> readAttribute(const QString &file, const QString &path,
                                     const wchar_t *attribute, int size)
{
    std::array<wchar_t, WideTextCapacity> text;
    if (!GetTextFromXML_W(file.toStdWString().c_str(), path.toStdWString().c_str(), attribute,
                          text.data(), size))
        return std::nullopt;
    return QString::fromWCharArray(text.data());
}

// Reads from the user's file, or from the shipped file if the user's has no such element.
std::optional<QString> readEither(const QString &path, const wchar_t *attribute, int size)
{
    const auto hasElement = [&](const QString &file) {
        return XmlHasElement(file.toStdWString().c_str(), path.toUtf8().constData());
    };
    std::optional<QString> text = readAttribute(g_ResourceFileName, path, attribute, size);
    const QString shipped = QCoreApplication::applicationDirPath() + u"/SnapWorkbench.xml"_s;
    if (text || hasElement(g_ResourceFileName) || !hasElement(shipped))
        return text;
    return readAttribute(shipped, path, attribute, size);
}

}  // namespace

void SetConfigString(const QString &key, const QString &value, int)
{
    const std::wstring file = g_ResourceFileName.toStdWString();
    SetTextToXML_W(file.c_str(), configPath(key).toStdWString().c_str(), L"data",
                   value.toStdWString().c_str(), WideTextCapacity);
    const TXmlDocItem *item = g_XmlDocSet.Find(file.c_str());
    if (s_handler && item && item->Dirty)
        s_handler();
}

void setSettingsHandler(std::function<void()> handler) { s_handler = std::move(handler); }

QString GetConfigString(const QString &key, int size)
{
    return readAttribute(g_ResourceFileName, configPath(key), L"data", size).value_or(u""_s);
}

std::optional<QString> FindConfigString(const QString &key)
{
    return readAttribute(g_ResourceFileName, configPath(key), L"data", WideTextCapacity);
}

int GetConfigNumber(const QString &key, int fallback, int least, int most)
{
    const QString text = GetConfigString(key);
    return text.isEmpty() ? fallback : std::clamp(text.toInt(), least, most);
}

QString GetString(const QString &key, int size)
{
    return readEither(u"Galeway\\Default\\Strings\\"_s + key.trimmed(), L"data", size)
        .value_or(u""_s);
}

QString GetBtnAttr(const QObject *widget, const QString &section, int kind)
{
    if (kind < 1 || kind > int(s_attributes.size()))
        return u""_s;
    const QString path = u"Galeway\\Default\\Buttons\\"_s +
                         (widget ? widget->objectName() : QString()) + u'\\' + section.trimmed();
    const std::optional<QString> text = readEither(path, s_attributes[kind - 1], WideTextCapacity);
    if (!text)
        return {};
    const QString value = text->trimmed();
    // A reader would expect a leading slash to make a path absolute, but it counts as relative, on
    // purpose.
    const bool isRelativePath = kind >= s_firstPath && kind <= s_lastPath && !value.isEmpty() &&
                                !value.contains(u':') && !value.startsWith(u'\\');
    return isRelativePath ? QCoreApplication::applicationDirPath() + u'/' + value : value;
}
