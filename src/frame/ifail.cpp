// Failure exits of workers and the two-level front.
#include "frame/ifail.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "frame/output.h"
#include "zek2/p01.h"

namespace zek {

FailureExit::FailureExit(const char *routine, char *errbuf, int *ifail, Channel channel)
    : routine_(routine), errbuf_(errbuf), ifail_(ifail), channel_(channel) {
    if (errbuf_ != nullptr) std::memcpy(errbuf_, "NONE", 5);
}

void FailureExit::write_errbuf(int ierror, long exit_number, std::initializer_list<MessageValue> values) {
    if (errbuf_ == nullptr) return;
    std::string line = format("%s", routine_) + format(" %5ld", static_cast<long>(ierror)) +
                       format(" %5ld", exit_number) + format(" %5ld", static_cast<long>(values.size()));
    for (const MessageValue &v : values) {
        switch (v.kind()) {
        case MessageValue::Kind::Integer: line += format(" %16ld", v.integer()); break;
        case MessageValue::Kind::Real: line += format(" %16.8e", v.real()); break;
        case MessageValue::Kind::Text: line += format(" %s", v.text().c_str()); break;
        }
    }
    const std::size_t n = std::min<std::size_t>(line.size(), kErrbufLength - 1);
    std::memcpy(errbuf_, line.data(), n);
    errbuf_[n] = '\0';
    errbuf_[kErrbufLength - 1] = '\0';
}

int FailureExit::report(int ierror, const Records &records) {
    const int name_len = static_cast<int>(std::strlen(routine_));
    const char *data = records.count() > 0 ? records.data() : nullptr;
    *ifail_ = channel_ == Channel::Host
                  ? P01_REPORT(*ifail_, ierror, routine_, records.count(), data, name_len, records.width())
                  : P01_REPORT_STREAM(*ifail_, ierror, routine_, records.count(), data, name_len, records.width());
    return *ifail_;
}

int FailureExit::fail(int ierror, long exit_number, const char *message, std::initializer_list<MessageValue> values,
                      int width) {
    write_errbuf(ierror, exit_number, values);
    return report(ierror, build_records(message_pieces(message), values, width));
}

int FailureExit::fail_with_records(int ierror, long exit_number, const Records &records,
                                   std::initializer_list<MessageValue> values) {
    write_errbuf(ierror, exit_number, values);
    return report(ierror, records);
}

int FailureExit::succeed() {
    if (errbuf_ != nullptr) errbuf_[kErrbufLength - 1] = '\0';
    return report(0, Records());
}

Front::Front(const char *routine) : routine_(routine) { std::memset(errbuf_, 0, sizeof errbuf_); }

void Front::finish(int ifail) const {
    if (ifail == 0) return;
    char name[32] = {0};
    long ierr = 0;
    std::sscanf(errbuf_, "%31s %5ld", name, &ierr);
    if (ierr == ifail) return;
    // A failure that its exit did not announce: the library's self-check, which never fires in a
    // correct build.  IFAIL is left as it stands.
    const std::string head = format("*** IFAIL MISMATCH IN %s: IFAIL = ", routine_);
    ZEK_HOST_PRINTF(" %s", head.c_str());
    ZEK_HOST_PRINTF(" %ld", static_cast<long>(ifail));
    ZEK_HOST_PRINTF(" %s", ", IERR =");
    ZEK_HOST_PRINTF(" %ld", ierr);
    ZEK_HOST_PRINTF(" %s", ", SRNAME =");
    ZEK_HOST_PRINTF(" %s", name);
    std::putchar('\n');
}

} // namespace zek
