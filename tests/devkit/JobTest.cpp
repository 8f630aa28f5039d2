#include "simhost/launch/Job.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace simhost {
namespace {

// A program that Windows and Wine have.
ProgramToStart Program() {
    wchar_t folder[MAX_PATH] = L"";
    GetSystemDirectoryW(folder, MAX_PATH);
    return {std::filesystem::path(folder) / L"cmd.exe", {L"/c", L"exit"}, {}, CREATE_SUSPENDED};
}

TEST(JobTest, AProcessBelongsToItBeforeItHasRunAtAll) {
    const Job job;
    const PROCESS_INFORMATION process = job.Start(Program());
    const std::vector<Job::Member> members = job.Members();
    ASSERT_EQ(members.size(), 1U);
    EXPECT_EQ(members.front().id, process.dwProcessId);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

TEST(JobTest, ItsProcessesEndWithIt) {
    HANDLE left = nullptr;
    {
        const Job job;
        const PROCESS_INFORMATION process = job.Start(Program());
        CloseHandle(process.hThread);
        left = process.hProcess;
    }
    EXPECT_EQ(WaitForSingleObject(left, 5000), WAIT_OBJECT_0);
    CloseHandle(left);
}

TEST(JobTest, WhatCannotBeStartedIsNamed) {
    ProgramToStart program = Program();
    program.program = L"C:\\nowhere.exe";
    try {
        (void)Job().Start(program);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "cannot start C:\\nowhere.exe (error 2)");
    }
}

}  // namespace
}  // namespace simhost
