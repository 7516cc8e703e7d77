#include "editing/toolstyles.h"

#include "editing/tools/tooltable.h"

namespace {

std::map<stateEnum, EditMsg> firstStyles()
{
    std::map<stateEnum, EditMsg> result;
    for (const Tool *tool : allTools()) {
        if (tool->ownWidth > 0)
            result[tool->state] = {.width = tool->ownWidth, .color = QColor(tool->ownColor)};
    }
    return result;
}

}  // namespace

const EditMsg &ToolStyles::of(stateEnum tool) const
{
    static const std::map<stateEnum, EditMsg> s_first = firstStyles();
    const auto first = s_first.find(tool);
    const auto own = m_own.find(tool);
    if (own != m_own.end() && (m_isApart || first != s_first.end()))
        return own->second;
    return first == s_first.end() ? m_shared : first->second;
}

void ToolStyles::set(stateEnum tool, EditMsg style)
{
    style.type = tool;
    if (m_isApart || toolOf(tool).ownWidth > 0)
        m_own[tool] = std::move(style);
    else
        m_shared = std::move(style);
}
