#include "platform/xdg/programlock.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

ProgramLock::~ProgramLock()
{
    if (m_file >= 0)
        close(m_file);
}

ProgramLock::State ProgramLock::acquire()
{
    if (m_file < 0)
        m_file = open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_file < 0)
        return State::Impossible;
    if (flock(m_file, LOCK_EX | LOCK_NB) == 0)
        return State::Held;
    return errno == EWOULDBLOCK ? State::Taken : State::Impossible;
}
