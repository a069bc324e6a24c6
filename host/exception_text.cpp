#include "host/exception_text.h"

#include <exception>

#include "framework/diag_exception.h"

std::string CurrentExceptionText() {
    try {
        throw;
    } catch (const CDiagException& e) {
        return e.what();
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "an exception of an unknown kind";
    }
}
