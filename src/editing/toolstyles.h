#pragma once

#include "editing/tools/tool.h"

#include <map>

/// What the tools draw with. The first tools share one style; a tool that would be of no use with
/// theirs has its own, and so has every tool if the user wants it. Texts and fonts are not part of
/// these styles.
class ToolStyles
{
public:
    const EditMsg &of(stateEnum tool) const;
    void set(stateEnum tool, EditMsg style);
    /// Whether every tool has a style of its own from now on. It is at first what it was before.
    void setApart(bool isApart) { m_isApart = isApart; }
    bool isApart() const { return m_isApart; }

private:
    EditMsg m_shared{.color = Qt::black};
    std::map<stateEnum, EditMsg> m_own{};
    bool m_isApart = false;
};
