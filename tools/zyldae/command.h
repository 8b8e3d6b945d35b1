#pragma once
// What zyldae's subcommands share. Each subcommand lives in a file of its own and adds itself
// to the application with an Add...Command(app, status) function: its options go into `app`,
// and once it is chosen its callback runs it and leaves the exit status in `status`.

namespace zyldae {

constexpr int kExitOk = 0;          // every read succeeded
constexpr int kExitReadFailed = 1;  // a read failed; its output is still written
constexpr int kExitUsage = 2;       // a usage error, or a file that cannot be read

}  // namespace zyldae
