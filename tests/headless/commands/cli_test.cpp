// The program in a shell: exit status, standard output, Ctrl-C.
#include "support/shell.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

const std::string Cli = std::string("'") + ZELVANE_CLI + "' ";
const std::string Ampa = "'" ZELVANE_DATA "/models/ampa_jonas_1993.mod' ";

TEST(CliTest, ExitStatusTellsDoneFailedAndMisused) {
  const auto expectStatus = [](int status, const std::string& command, const Texts& arguments) {
    for (const std::string& line : arguments) {
      EXPECT_EQ(Shell(Cli + command + line + " < /dev/null 2> /dev/null").status, status) << command + line;
    }
  };
  const std::string simulate = "simulate " + Ampa;
  expectStatus(0, "", {"--version", "--help", "simulate --help", "model " + Ampa, "drive"});
  expectStatus(1, "", {"simulate absent.mod", "model absent.mod", "qmatrix absent.mod"});
  expectStatus(1, "drive ", {"/", "absent.txt"});
  expectStatus(2, "", {"", "nothing", "simulate", "model " + Ampa + Ampa, "model --upgrade " + Ampa});
  expectStatus(2, "drive ", {"--seed x", "--dir absent"});
  expectStatus(0, simulate, {"--points 1000", "--simulator montecarlo --points 1000 --channels 5 --runs 2"});
  expectStatus(2, simulate, {"--points 0", "--points many", "--interval -1", "--units mV", "--channels -1"});
  expectStatus(2, simulate, {"--simulator exact", "--runs 0", "--set Foo=1", "--seed 1,2"});
  expectStatus(0, "qmatrix " + Ampa, {"--time 5.5"});
  expectStatus(2, "qmatrix " + Ampa, {"--time -1"});
}

TEST(CliTest, APipeIsRefusedAtOnce) {
  const TemporaryFolder folder;
  const std::string pipe = folder.File("pipe.mod");
  ASSERT_EQ(Shell("mkfifo '" + pipe + "'").status, 0);
  for (const char* command : {"model", "simulate", "qmatrix", "info", "measure", "convert"}) {
    const std::string out = std::string(command) == "convert" ? " '" + folder.File("out.csv") + "'" : "";
    EXPECT_EQ(Shell("timeout 20 " + Cli + command + " '" + pipe + "'" + out + " 2> /dev/null").status, 1)
        << command;
  }
}

TEST(CliTest, AProgramOfTheCurrentFolderIsNotStartedAsTheConversionTool) {
  const TemporaryFolder folder;
  const std::string bin = folder.File("bin");
  std::filesystem::create_directory(bin);
  std::filesystem::copy_file(ZELVANE_CLI, bin + "/zelvane-cli");  // far from any data folder
  const std::string tool = folder.Written("ABFUtil1.exe", "#!/bin/sh\ntouch started\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  const ShellResult outcome = Shell("cd '" + folder.Path().string() + "' && echo press FxnFileConversion | " +
                                    "env -u ZELVANE_DATA_DIR bin/zelvane-cli drive; sleep 0.3; ls");
  EXPECT_NE(outcome.out.find("not in the program's folder"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find("started\n"), std::string::npos) << outcome.out;
}

TEST(CliTest, DriveReadsAScriptOrStandardInput) {
  const TemporaryFolder folder;
  const std::string script = folder.File("a script.txt");
  WriteWholeFile(script, "get NumPoints\nfrobnicate\nget Valence");
  const std::string expected =
      "{\"name\":\"NumPoints\",\"value\":10240}\n{\"error\":\"unknown command: frobnicate\"}\n"
      "{\"name\":\"Valence\",\"value\":1}\n";
  const std::string drive = Cli + "drive --dir '" + folder.Path().string() + "' ";
  const ShellResult fromFile = Shell(drive + "'" + script + "'");
  EXPECT_EQ(fromFile.out, expected);
  EXPECT_EQ(fromFile.status, 2);
  EXPECT_EQ(Shell(drive + "< '" + script + "'").out, expected);
}

TEST(CliTest, DriveOpensNamedFilesAndPassesOverThoseThatAreNone) {
  const ShellResult outcome =
      Shell("echo 'get StateLabel[4]' | " + Cli + "drive --dir / --open absent.mod --open " + Ampa);
  EXPECT_EQ(outcome.out, "{\"name\":\"StateLabel[4]\",\"value\":\"O\"}\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CliTest, CtrlCStopsARunAndWritesNothing) {
  const TemporaryFolder folder;
  // A thousand runs of many channels would take minutes. --foreground sends the signal only once: a second one
  // would end the process.
  const ShellResult outcome =
      Shell("timeout --foreground -s INT 1 " + Cli + "simulate " + Ampa +
            "--simulator montecarlo --points 1000000 --channels 100000 --runs 1000 --out '" +
            folder.File("trace.txt") + "' 2>&1; echo done");
  EXPECT_EQ(outcome.out, "!: Simulation Interrupted by User\ndone\n");
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(CliTest, TimeoutStopsAnyCommand) {
  const TemporaryFolder folder;
  WriteWholeFile(folder.File("endless"), "enter MaxStepSize 1e-9\npress AcquireData\nget NumPoints\n");
  const std::string script = "drive --timeout 0.5 --open " + Ampa + " '" + folder.File("endless") + "'";
  const std::string run = "simulate --timeout 0.5 " + Ampa + "--simulator fixed --set MaxStepSize=1e-9 ";
  const std::string notice = "stopped after 0.5 s (--timeout)\n";
  const std::string popup = R"({"popup":"message","title":"!","text":"Simulation Interrupted by User"})"
                            "\n";
  for (const auto& [command, told] :
       {std::pair{script, notice + popup}, {run, notice + "!: Simulation Interrupted by User\n"}}) {
    const ShellResult outcome = Shell(Cli + command + " 2>&1");
    EXPECT_EQ(outcome.out, told);
    EXPECT_EQ(outcome.status, 1);
  }
}

TEST(CliTest, ATerminalGetsControlCharactersEscaped) {
  const TemporaryFolder folder;
  const std::string file = folder.File("\x1b[2Jname\x7f\xc2\x9b\x9b\xc3\xa9\xe2\x82\x9b");
  const auto onTerminal = [&](const std::string& options) {
    return Shell("script -qec \"" + Cli + "info " + options + "'" + file + "'\" /dev/null").out;
  };
  WriteWholeFile(file, "1\n2\n3\n");
  EXPECT_NE(onTerminal("").find("/\\x1b[2Jname\\x7f\\x9b\\x9b\xc3\xa9\xe2\x82\x9b"), std::string::npos)
      << onTerminal("");
  EXPECT_EQ(onTerminal("").find('\x1b'), std::string::npos);
  EXPECT_NE(onTerminal("--json ").find(R"(/\u001b[2Jname\u007f\u009b)"), std::string::npos)
      << onTerminal("--json ");
}

}  // namespace
}  // namespace zelvane
