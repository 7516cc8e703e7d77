#pragma once

#include <QByteArray>
#include <QVarLengthArray>

#include <string>

/// The capacity that the outputs of the six conversions below must have, in bytes, including the
/// terminator.
inline constexpr int ConversionCapacity = 16384;

/// Conversions between the system's narrow encoding ("Ansi"), UTF-8 and wide text. They return 1 if
/// the whole text fitted. A text that is too long is cut and returns 0; a null source empties the
/// output and returns 0. Only the low 16 bits of a wide character are converted, so characters
/// beyond U+FFFF are lost.
int AnsiToUnicode(const char *source, wchar_t *output);
int UnicodeToAnsi(const wchar_t *source, char *output);
int UTF8ToUnicode(const char *source, wchar_t *output);
int UnicodeToUTF8(const wchar_t *source, char *output);
int AnsiToUTF8(const char *source, char *output);
int UTF8ToAnsi(const char *source, char *output);

inline constexpr unsigned CodePageSystem = 0;
inline constexpr unsigned CodePageUtf8 = 65001;

/// Convert one text. The result is empty for any other code page. `source` must not be null; CW2AEX
/// and CA2WEX handle null.
QByteArray narrowText(const wchar_t *source, unsigned codePage);
std::wstring wideText(const char *source, unsigned codePage);

/// Narrow text converted from wide text, valid while the object lives. A null source gives null; an
/// unknown code page gives the empty string.
template<int InlineSize = 128> class CW2AEX
{
public:
    explicit CW2AEX(const wchar_t *source, unsigned codePage = CodePageSystem)
    {
        if (!source)
            return;
        const QByteArray text = narrowText(source, codePage);
        m_text.append(text.constData(), text.size() + 1);
    }
    operator const char *() const { return m_text.isEmpty() ? nullptr : m_text.constData(); }

private:
    QVarLengthArray<char, InlineSize> m_text;  // with its terminator; empty if the source was null
};

/// Wide text converted from narrow text; otherwise like CW2AEX.
template<int InlineSize = 128> class CA2WEX
{
public:
    explicit CA2WEX(const char *source, unsigned codePage = CodePageSystem)
    {
        if (!source)
            return;
        const std::wstring text = wideText(source, codePage);
        m_text.append(text.c_str(), qsizetype(text.size()) + 1);
    }
    operator const wchar_t *() const { return m_text.isEmpty() ? nullptr : m_text.constData(); }

private:
    QVarLengthArray<wchar_t, InlineSize> m_text;
};
