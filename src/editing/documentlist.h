#pragma once

#include "editing/picturedocument.h"

#include <QHash>

#include <utility>
#include <vector>

/// The open documents, in the order of their tabs, and which of them is the current one. It knows
/// no window: whoever shows it asks.
///
/// An index is a place in the list and changes when a document is closed; -1 stands for none.
/// Across anything that runs events a document is named by its number, which stays.
class DocumentList
{
public:
    using Documents = std::vector<QPictureDocument>;

    int size() const { return static_cast<int>(m_documents.size()); }
    bool isEmpty() const { return m_documents.empty(); }
    bool has(int index) const { return index >= 0 && index < size(); }
    QPictureDocument &operator[](int index) { return m_documents[index]; }
    const QPictureDocument &operator[](int index) const { return m_documents[index]; }
    Documents::iterator begin() { return m_documents.begin(); }
    Documents::iterator end() { return m_documents.end(); }
    Documents::const_iterator begin() const { return m_documents.begin(); }
    Documents::const_iterator end() const { return m_documents.end(); }

    int current() const { return m_current; }
    void setCurrent(int index) { m_current = index; }
    QPictureDocument *currentDocument()
    {
        return has(m_current) ? &m_documents[m_current] : nullptr;
    }
    const QPictureDocument *currentDocument() const
    {
        return has(m_current) ? &m_documents[m_current] : nullptr;
    }

    int indexOf(int number) const;
    QPictureDocument *find(int number);
    /// The document that is bound to the file, whatever path or link leads there.
    int indexOfFile(const QString &path) const;
    QList<int> numbers() const;
    bool hasModified() const;

    /// A grab: modified, with the next running number of its name. Gives its index.
    int add(const QPixmap &picture, const QString &name, const PictureOrigin &origin);
    /// One that an earlier run has left, modified, whose picture is still to come. The running
    /// numbers of its name go on after its own. Gives its index.
    int addReturned(const UnsavedWork &work);

    struct Opened {
        int first = -1;    ///< index of the first document that was added
        int known = -1;    ///< index of the first one that was open already
        QList<int> all{};  ///< indexes of all, in the order of the files
    };
    /// Adds a document for each file that has none; their pictures are still to come.
    Opened addFiles(const QStringList &paths);

    /// Takes one out. Gives the index of the one to show next: the index of the current document
    /// stays, whichever one was closed, unless it was the last in the list. None is current until
    /// then.
    int remove(int index);
    void clear();

private:
    Documents m_documents{};
    int m_current = -1;
};
