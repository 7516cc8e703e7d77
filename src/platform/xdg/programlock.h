#pragma once

#include <QString>

/// A lock on a file. The system releases it when the process ends, however that happens. The file
/// is never removed: otherwise two programs could each lock a file of the same name.
class ProgramLock
{
public:
    enum class State {
        Held,
        Taken,      ///< another process has it
        Impossible  ///< the file can't be created or locked
    };

    explicit ProgramLock(QString path) : m_path(std::move(path)) {}
    ~ProgramLock();
    ProgramLock(const ProgramLock &) = delete;
    ProgramLock &operator=(const ProgramLock &) = delete;

    State acquire();

private:
    QString m_path;
    int m_file = -1;
};
