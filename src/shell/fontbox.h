#pragma once

#include <QComboBox>
#include <QFont>

/// A box to choose a font family from. The list is made when it is first needed: the toolkit's own
/// font box makes it at once, and that takes longer than all the rest of the window.
class FontBox : public QComboBox
{
    Q_OBJECT

public:
    explicit FontBox(QWidget *parent = nullptr);

    const QFont &currentFont() const { return m_font; }
    void setCurrentFont(const QFont &font);

    void showPopup() override;

signals:
    void currentFontChanged(const QFont &font);

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    void fill();
    void choose(const QString &family);

    QFont m_font;
    bool m_filled = false;
};
