#pragma once

#include <QList>
#include <QMap>

#include <cstdint>

/// Which key of the keyboard is which one of the toolkit's in each of the keyboard's layouts.
///
/// The layout that is active decides. A letter that it lacks is taken from another configured
/// layout that has it, or else from its position on a US keyboard, so that users of, for example,
/// Greek or Russian layouts can use the hot keys. No key stands for two letters in one layout.
class KeyLayout
{
public:
    using Group = QMap<uint8_t, int>;  ///< the toolkit's key of each that is one

    KeyLayout() = default;
    /// `shifted` is what the keys are with Shift, in the same layouts.
    explicit KeyLayout(const QList<Group> &groups, const QList<Group> &shifted = {});

    /// Whether a key stands for one of the toolkit's in that layout.
    bool isKey(uint8_t code, int group, int key) const;
    /// The keys that stand for it in any layout. Only what no key is without Shift is looked for
    /// with it.
    QList<uint8_t> keysOf(int key) const;

private:
    QList<Group> m_groups;
    QList<Group> m_shifted;
};
