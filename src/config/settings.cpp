#include "config/settings.h"

#include "config/applicationrecord.h"
#include "config/xmlstore.h"

#include <QCoreApplication>
#include <QObject>

#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array s_attributes{
    L"Caption",         L"ShowCaption",   L"HintString",    L"NormalImg",       L"OverImg",
    L"DownImg",         L"DisableImg",    L"MaskImg",       L"NormalCursor",    L"DoingCursor",
    L"FontColorNormal", L"FontColorOver", L"FontColorDown", L"FontColorDisable"};
constexpr int s_firstPath = 4;
constexpr int s_lastPath = 10;

std::wstring configPath(const QString &key)
{
    return (u"Galeway\\Config\\"_s + key.trimmed()).toStdWString();
}

// Nothing when the attribute is not there.
std::optional<QString> readAttribute(const std::wstring &path, const wchar_t *attribute, int size)
{
    std::array<wchar_t, WideTextCapacity> text;
    if (!GetTextFromXML_W(g_ResourceFileName.toStdWString().c_str(), path.c_str(), attribute,
                          text.data(), size))
        return std::nullopt;
    return QString::fromWCharArray(text.data());
}

}  // namespace

void SetConfigString(const QString &key, const QString &value, int)
{
    SetTextToXML_W(g_ResourceFileName.toStdWString().c_str(), configPath(key).c_str(), L"data",
                   value.toStdWString().c_str(), WideTextCapacity);
}

QString GetConfigString(const QString &key, int size)
{
    return readAttribute(configPath(key), L"data", size).value_or(u""_s);
}

QString GetString(const QString &key, int size)
{
    const QString path = u"Galeway\\Default\\Strings\\"_s + key.trimmed();
    return readAttribute(path.toStdWString(), L"data", size).value_or(u""_s);
}

QString GetBtnAttr(const QObject *widget, const QString &section, int kind)
{
    if (kind < 1 || kind > int(s_attributes.size()))
        return u""_s;
    const QString path = u"Galeway\\Default\\Buttons\\"_s +
                         (widget ? widget->objectName() : QString()) + u'\\' + section.trimmed();
    const std::optional<QString> text =
        readAttribute(path.toStdWString(), s_attributes[kind - 1], WideTextCapacity);
    if (!text)
        return {};
    const QString value = text->trimmed();
    // A leading slash counts as relative, on purpose.
    const bool isRelativePath = kind >= s_firstPath && kind <= s_lastPath && !value.isEmpty() &&
                                !value.contains(u':') && !value.startsWith(u'\\');
    return isRelativePath ? QCoreApplication::applicationDirPath() + u'/' + value : value;
}
