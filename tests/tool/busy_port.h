/// \file
/// A port that accepts no connection and refuses none.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

/// A listening socket whose queue is full, so that a further connection is never made.
class BusyPort {
public:
    BusyPort() : listener_(socket(AF_INET, SOCK_STREAM, 0))
    {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        EXPECT_EQ(bind(listener_, generic(), size), 0);
        EXPECT_EQ(getsockname(listener_, generic(), &size), 0);
        EXPECT_EQ(listen(listener_, 0), 0);
        for (int &waiting : waiting_) {
            waiting = socket(AF_INET, SOCK_STREAM, 0);
            fcntl(waiting, F_SETFL, O_NONBLOCK);
            (void)connect(waiting, generic(), sizeof address_);
        }
    }
    BusyPort(const BusyPort &) = delete;
    BusyPort &operator=(const BusyPort &) = delete;
    ~BusyPort()
    {
        for (const int waiting : waiting_) {
            close(waiting);
        }
        close(listener_);
    }
    std::string url() const
    {
        return "http://127.0.0.1:" + std::to_string(ntohs(address_.sin_port)) + "/";
    }

private:
    sockaddr *generic()
    {
        return reinterpret_cast<sockaddr *>(&address_);
    }

    sockaddr_in address_ = {};
    int listener_;
    int waiting_[4] = {-1, -1, -1, -1};
};
