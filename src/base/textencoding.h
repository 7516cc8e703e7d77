#pragma once

#include <QByteArray>
#include <QVarLengthArray>

#include <string>

/// What the outputs of the six conversions below must hold, in bytes, terminator included.
inline constexpr int ConversionCapacity = 16384;

/// Conversions between the system's narrow encoding ("Ansi"), UTF-8 and wide text. They give 1 when
/// the whole text fitted. A longer text is cut and gives 0; a null source empties the output and
/// gives 0. Wide sources keep only the low 16 bits of a character, so those beyond U+FFFF don't
/// survive.
int AnsiToUnicode(const char *source, wchar_t *output);
int UnicodeToAnsi(const wchar_t *source, char *output);
int UTF8ToUnicode(const char *source, wchar_t *output);
int UnicodeToUTF8(const wchar_t *source, char *output);
int AnsiToUTF8(const char *source, char *output);
int UTF8ToAnsi(const char *source, char *output);

inline constexpr unsigned CodePageSystem = 0;
inline constexpr unsigned CodePageUtf8 = 65001;

/// Empty for a code page other than these two. No null sources here: see CW2AEX and CA2WEX.
QByteArray narrowText(const wchar_t *source, unsigned codePage);
std::wstring wideText(const char *source, unsigned codePage);

/// Narrow text made of wide text for as long as the object lives. Null stays null; an unknown code
/// page gives the empty string.
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
    QVarLengthArray<char, InlineSize> m_text;  // with its terminator; empty for a null source
};

/// Wide text made of narrow text; otherwise as CW2AEX.
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
