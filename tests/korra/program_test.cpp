#include "support/support_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::string errors;
};

/// Runs the program in a folder of its own.
class ProgramTest : public ::testing::Test {
protected:
    /// @param arguments  as a shell takes them, with redirections; "@" stands for the folder
    Outcome run(std::string arguments, const std::string& input = "") const
    {
        for (std::size_t at = 0; (at = arguments.find('@', at)) != std::string::npos;)
            arguments.replace(at, 1, folder_.pathOf(""));
        folder_.write("input", input);
        const std::string command = std::string(ORVEX_BIN_DIR) + "/korra <" +
                                    folder_.pathOf("input") + " >" + folder_.pathOf("out") + " 2>" +
                                    folder_.pathOf("errors") + ' ' + arguments;
        const int waited = std::system(command.c_str());
        return {WIFEXITED(waited) ? WEXITSTATUS(waited) : -1, folder_.contentsOf("out"),
                folder_.contentsOf("errors")};
    }

    const tests::SupportFolder folder_;
};

TEST_F(ProgramTest, AScriptIsEchoedBehindItsPrompts)
{
    folder_.write("script", "; a comment\nSETVAR\r\nLTSCALE\n2.50\nNOSUCH\n_.setvar\nltscale\n\n");
    const Outcome outcome = run("--script @script");
    EXPECT_EQ(outcome.out, "Command: SETVAR\n"
                           "Variable name: LTSCALE\n"
                           "New value for LTSCALE <1>: 2.50\n"
                           "Command: NOSUCH\n"
                           "Unknown command \"NOSUCH\".\n"
                           "Command: _.setvar\n"
                           "Variable name: ltscale\n"
                           "New value for LTSCALE <2.5>: \n"
                           "Command: \n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(ProgramTest, AScriptMayComeFromStandardInput)
{
    const Outcome traced = run("--trace --module Orvexbase --script -", "REGEN\nQUIT\nNOSUCH\n");
    EXPECT_EQ(traced.out, "Command: REGEN\nCommand: QUIT\n");
    EXPECT_THAT(traced.errors, HasSubstr(" = object\n"));
    const Outcome outcome = run("", "ZOOM\n1,1\n"); // the end cancels the waiting prompt
    EXPECT_EQ(outcome.out,
              "Command: ZOOM\nFirst corner or [Extents]: 1,1\nOther corner: \nCommand: \n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ProgramTest, OptionsAreTakenOrRefused)
{
    // The arguments, the status and part of what is told.
    const std::tuple<const char*, int, const char*> cases[] = {
        {"--version", 0, "korra "},
        {"--help --script @missing", 0, "--module FILE"},
        {"--set PICKBOX=7 --size 1000x500 --path @", 0, ""},
        {"--set PICKBOX=x", 2, "PICKBOX cannot be set"},
        {"--set PICKBOX", 2, "NAME=VALUE"},
        {"--size 1000", 2, "WxH"},
        {"--save", 2, "--save takes a value"},
        {"--nonsense", 2, "unknown option --nonsense"},
        {"a.dxf b.dxf", 2, "more than one drawing"},
        {"--script @missing", 3, "missing: cannot be read"},
        {"--template @missing.dxf", 3, "missing.dxf: cannot be read"},
        {"--module nosuchmodule", 3, "nosuchmodule"},
        {"@missing.dxf", 3, "missing.dxf"},
        {"--save @no/such/folder.dxf", 3, "folder.dxf"},
        {"@kept.dxf --save @kept.dxf", 3, "kept.dxf"},
    };
    folder_.write("kept.dxf", "not a drawing");

    for (const auto& [arguments, status, told] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments << '\n' << outcome.errors;
        EXPECT_THAT(status ? outcome.errors : outcome.out, HasSubstr(told)) << arguments;
    }
    EXPECT_EQ(folder_.contentsOf("kept.dxf"), "not a drawing");
}

TEST_F(ProgramTest, WhatWasSetIsSavedAndReadAgain)
{
    const Outcome saved = run("--save @out.dxf", "ZOOM\n0,0\n4,3\nSETVAR\nLTSCALE\n7.25\n"
                                                 "UCS\n10,0\n10,5\n0,0\nUCS\nNAME\nMy\n");
    ASSERT_EQ(saved.status, 0) << saved.errors;
    const Outcome read =
        run("@out.dxf --save @out.dxf",
            "SETVAR\nLTSCALE\n\nSETVAR\nUCSNAME\n\nSETVAR\nUCSORG\n\nSETVAR\nVIEWSIZE\n");
    EXPECT_EQ(read.errors, "");
    for (const char* value : {"<7.25>", "<My>", "<10,0,0>", "<3>"})
        EXPECT_THAT(read.out, HasSubstr(value));
}

TEST_F(ProgramTest, ANewDrawingStartsFromATemplateAndIsANewOneAllTheSame)
{
    const std::string kept = "  0\nSECTION\n  2\nHEADER\n  9\n$LTSCALE\n 40\n";
    const std::string rest = "\n  9\n$HANDSEED\n  5\nABC\n  0\nENDSEC\n  0\nEOF\n";
    folder_.write("other.dxf", kept + "3.50" + rest);
    EXPECT_THAT(run("--save @new.dxf").errors, HasSubstr("new.dxf: made without a template"));
    folder_.write("template.dxf", kept + "2.50" + rest);
    const char* const script = "SETVAR\nDWGNAME\n";
    for (const auto& [arguments, value] :
         {std::pair("--template @other.dxf --path @ ", "3.50"), std::pair("--path @ ", "2.50")}) {
        const Outcome outcome = run(std::string(arguments) + "--save @new.dxf", script);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_EQ(folder_.contentsOf("new.dxf"), kept + value + rest);
        EXPECT_THAT(outcome.out, HasSubstr("<Drawing1>"));
    }
}

TEST_F(ProgramTest, WhatAnOpenedDrawingIsSaidToHoldGoesToTheErrors)
{
    folder_.write("odd.dxf", "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\nmore\n");
    const Outcome outcome = run("@odd.dxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.errors, StartsWith("korra: " + folder_.pathOf("odd.dxf") + ":9: what "));
    EXPECT_EQ(outcome.out, "Command: \n");
}

TEST_F(ProgramTest, OutputThatCannotBeWrittenIsAFailureAndNothingIsSaved)
{
    constexpr int kClosedPipe = 9; // the last one that every shell can name
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(dup2(ends[1], kClosedPipe), kClosedPipe);
    for (const int end : ends)
        close(end);
    for (const char* arguments :
         {"--help >/dev/full", "--version >/dev/full", "--save @out.dxf >/dev/full",
          "--save @out.dxf --module probe_registering >&9"}) {
        const Outcome outcome = run(arguments, "ENDALL\n"); // which would end it in its own way
        EXPECT_EQ(outcome.status, 3) << arguments;
        EXPECT_THAT(outcome.errors, StartsWith("korra: standard output: cannot be written: "));
    }
    close(kClosedPipe);
    EXPECT_EQ(folder_.contentsOf("out.dxf"), "");
}

TEST_F(ProgramTest, WhatWasPrintedIsOutBeforeAModuleEndsTheProgram)
{
    const Outcome outcome = run("--module probe_registering", "REGEN\nENDALL\n");
    EXPECT_EQ(outcome.out, "Command: REGEN\nCommand: ENDALL\nhalf a line");
}

TEST_F(ProgramTest, AScriptLineOfOverAMegabyteIsRefused)
{
    const std::string megabyte(std::size_t{1} << 20, 'x');
    EXPECT_EQ(run("", megabyte).status, 1) << "a line may be as long";
    folder_.write("script", "REGEN\n" + megabyte + 'x');
    const Outcome outcome = run("--script @script");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors,
              "korra: " + folder_.pathOf("script") + ":2: the line is longer than a megabyte\n");
}

TEST_F(ProgramTest, ASaveThatNobodyCouldReadAgainLeavesTheOldFileAndNamesTheObject)
{
    folder_.write("old.dxf", "old");
    const Outcome outcome =
        run("--module drafting --save @old.dxf " ORVEX_DRAWINGS_DIR "/bracket.dxf",
            "DIMSET\n30,-25\ndimgap\n-1e308\n"); // the graphics would reach beyond all numbers
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, HasSubstr("old.dxf: cannot be saved: LINE "));
    EXPECT_EQ(folder_.contentsOf("old.dxf"), "old");
}

} // namespace
