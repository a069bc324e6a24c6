#include "framework/diag_mutex.h"

CMutex::CMutex() {
    DIAG_ASSERT(!::pthread_mutexattr_init(&m_attr));
    DIAG_ASSERT(!::pthread_mutexattr_settype(&m_attr, PTHREAD_MUTEX_ERRORCHECK));
    DIAG_ASSERT(!::pthread_mutex_init(&m_lock, &m_attr));
}
