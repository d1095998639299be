// A resolver that never answers, for the program that is linked with it.
#include <netdb.h>
#include <unistd.h>

extern "C" hostent *gethostbyname(const char *)
{
    while (pause() < 0) {
    }
    return nullptr;
}
