#pragma once

#include <csignal>
#include <sys/resource.h>

/// While it lives, files of this process end at so many bytes, as on a full disk.
class XFullDisk
{
public:
    explicit XFullDisk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit = {bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~XFullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_handler);
    }
    XFullDisk(const XFullDisk&) = delete;
    XFullDisk& operator=(const XFullDisk&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_old{};
};
