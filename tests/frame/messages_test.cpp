// The fail record, the raising routines and the catalogue.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "frame/raise.h"
#include "zek2/messages.h"

namespace {

struct HandlerCall {
    std::string message;
    int code = -1;
    std::string routine;
    int calls = 0;
} g_handler;

void recording_handler(const char *message, int code, const char *routine) {
    g_handler = {message, code, routine, g_handler.calls + 1};
}

TEST(Raise, SuccessCallsTheHandlerAndNonzeroWithoutPrintStoresSilently) {
    ZekFail fail = zek::clean_fail();
    fail.code = 9;
    fail.handler = recording_handler;
    g_handler = {};
    ZEK_RAISE(nullptr, 0, "s14aac", &fail);
    EXPECT_TRUE(fail.code == 0 && std::string(fail.message) == "ZE_NOERROR:\n  No error.");
    EXPECT_TRUE(g_handler.calls == 1 && g_handler.code == 0 && g_handler.routine == "s14aac");
    fail = zek::clean_fail();
    testing::internal::CaptureStderr();
    ZEK_RAISE("ZE_ALLOC_FAIL:\n  Memory allocation failed.", 73, "m01esc", &fail);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(fail.code == 73 && std::string(fail.message) == "ZE_ALLOC_FAIL:\n  Memory allocation failed.");
}

TEST(Raise, PrintFlagShowsNoticeByClassAndANullFailShowsTwoNoticesAndReturns) {
    ZekFail fail = zek::clean_fail();
    fail.print = 1;
    testing::internal::CaptureStderr();
    ZEK_RAISE("ZW_SOME_PRECISION_LOSS:\n  Some.", 711, "s14abc", &fail);
    ZEK_RAISE("ZE_ALLOC_FAIL:\n  Memory allocation failed.", 73, "s14abc", &fail);
    ZEK_RAISE("no prefix at all", 5, "s14abc", &fail);
    ZEK_RAISE(nullptr, 73, "m01esc", nullptr);
    ZEK_RAISE(nullptr, 0, "m01esc", nullptr);  // success with no record does nothing
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ZEK_RUNTIME_WARNING: Warning From ZEK Routine s14abc: ZW_SOME_PRECISION_LOSS:\n  Some.\n"
              "ZEK_RUNTIME_ERROR: Error Detected by ZEK Routine s14abc: ZE_ALLOC_FAIL:\n  Memory allocation failed.\n"
              "ZEK_RUNTIME_WARNING: Warning From ZEK Routine s14abc: no prefix at all\n"
              "ZEK_RUNTIME_ERROR: Error Detected by ZEK Routine m01esc: ZE_ALLOC_FAIL:\n  Memory allocation failed.\n"
              "Program Aborted: ...Program Aborted\n");
}

TEST(Raise, TypedHelpersFillTheTemplates) {
    ZekFail fail = zek::clean_fail();
    zek::raise_int_arg(&fail, "m01cac", ZE_INT_ARG_GT, "n", "268435455", 300000000L);
    EXPECT_EQ(fail.code, ZE_INT_ARG_GT);
    EXPECT_STREQ(fail.message, "ZE_INT_ARG_GT:\n  On entry, n must not be greater than 268435455: n = 300000000.");
    zek::raise_int_arg(&fail, "x", ZE_INT_ARG_GE, "k", "2", 5L);
    EXPECT_STREQ(fail.message, "ZE_INT_ARG_GE:\n  On entry, k must not be greater than or equal to 2:k = 5.");
    zek::raise_real_arg(&fail, "s14aac", ZE_REAL_ARG_LE, "x", "0.0", -1.5);
    EXPECT_STREQ(fail.message, "ZE_REAL_ARG_LE:\n  On entry, x must not be less than or equal to 0.0: x = -1.5.");
    zek::raise_text(&fail, "m01cac", ZE_BAD_PARAM, "order");
    EXPECT_STREQ(fail.message, "ZE_BAD_PARAM:\n  On entry, parameter order had an illegal value.");
}

TEST(Y99abc, NamesMessagesAndRejectsOthers) {
    ZekFail fail = zek::clean_fail();
    EXPECT_STREQ(y99abc(73, "ZE_ALLOC_FAIL:\n  Memory allocation failed.", &fail), "ZE_ALLOC_FAIL");
    EXPECT_STREQ(y99abc(0, ":starts with a colon", &fail), "");
    EXPECT_EQ(y99abc(1, "anything", &fail), nullptr);
    EXPECT_EQ(fail.code, 1);
    EXPECT_STREQ(fail.message, "ZE_CODE_NOT_SET:\n  Error code has not been set by the last function called.");

    const char *name = y99abc(5, "abc", &fail);
    EXPECT_EQ(fail.code, 2);
    EXPECT_STREQ(fail.message,
                 "ZE_ERR_MSG_STRING:\n  The string \"abc\",\n  has not been recognised as a valid message string.");
    EXPECT_STREQ(name, fail.message);
}

TEST(F06ArgErrorEnum, RaisesCode71WithANotice) {
    testing::internal::CaptureStderr();
    F06_ARG_ERROR_ENUM("f06pac/dgemv", 4);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ZEK_RUNTIME_ERROR: Error Detected by ZEK Routine f06pac/dgemv: ZE_F06_BAD_PARAM:\n"
              "  On entry, parameter number 4 had an illegal value.\n");
}

TEST(Catalogue, EveryEntryIsANamedTemplateAndTheTableEndsEmpty) {
    std::set<std::string> names;
    int warnings = 0;
    for (int code = 0; code < zek::kCatalogueSize; ++code) {
        const std::string entry = ZEK_MESSAGE_TABLE[code];
        const std::size_t colon = entry.find(":\n  ");
        ASSERT_NE(colon, std::string::npos) << code;
        const std::string name = entry.substr(0, colon);
        EXPECT_TRUE(name.rfind("ZE_", 0) == 0 || name.rfind("ZW_", 0) == 0) << name;
        EXPECT_TRUE(names.insert(name).second) << "duplicate " << name;
        warnings += name.rfind("ZW_", 0) == 0;
    }
    EXPECT_EQ(warnings, 38);
    EXPECT_STREQ(ZEK_MESSAGE_TABLE[zek::kCatalogueSize], "");
    EXPECT_STREQ(ZEK_MESSAGE_TABLE[74],
                 "ZE_INTERNAL_ERROR:\n  An internal error has occurred in this function.\n  Check the function call "
                 "and any array sizes. If the call is correct\n  then please consult ZEK for assistance.");
    EXPECT_STREQ(ZEK_MESSAGE_TABLE[701] , "ZE_BAD_RANK:\n  On entry, %s does not contain a valid permutation.");
}

} // namespace
