#include "fault_daemon/state.h"

#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "daemon/roles.h"

namespace fault_daemon {
namespace {

std::map<std::string, std::string> Domains() {
    std::map<std::string, std::string> images;
    for (const aaad::Role role : {aaad::Role::kWorking, aaad::Role::kConfiguration}) {
        aaad::TakeRole(role);
        for (const char* name : {DOM_SYSTEM_DOMAIN, "isp-a.example", "other.example"}) {
            const fake::Quiet quiet;
            const aaad::Message image(DOM_EncodeDomain(name));
            const char* of = role == aaad::Role::kWorking ? "working." : "config.";
            images[of + std::string(name)] = image ? fake::ImageOf(image.get()) : std::string();
        }
    }
    return images;
}

std::string Part(const fault::Snapshot& snapshot, const std::string& role, const char* part) {
    const auto found = snapshot.find(role + '.' + part);
    return found == snapshot.end() ? std::string() : found->second;
}

}  // namespace

State TakeState() {
    return {fault::TakeSnapshot(), Domains()};
}

std::string BetweenRoles(const State& state) {
    std::string parts;
    for (const char* part : {"domains", "order", "settings", "critical", "author", "records"}) {
        if (Part(state.parts, "config", part) != Part(state.parts, "working", part)) {
            parts += std::string(part) + ' ';
        }
    }
    return parts;
}

std::string AfterRestart(const State& before, const State& started) {
    std::string parts;
    for (const char* role : {"config", "working"}) {
        for (const char* part :
             {"order", "settings", "critical", "author", "policies", "records", "nas_ids"}) {
            if (Part(before.parts, role, part) != Part(started.parts, role, part)) {
                parts += std::string(role) + '.' + part + ' ';
            }
        }
    }
    if (before.domains != started.domains) parts += "domains ";
    return parts;
}

std::map<std::string, std::string> Databases(const fault::Snapshot& parts) {
    std::map<std::string, std::string> tables;
    for (const auto& [name, contents] : parts) {
        if (name.compare(0, 9, "database.") == 0) tables[name] = contents;
    }
    return tables;
}

std::string Resources() {
    return std::to_string(fake::LiveMessages()) + " messages, " +
           std::to_string(fake::OpenSockets()) + " sockets, " +
           std::to_string(fake::OpenCursors()) + " cursors, " +
           std::to_string(fake::OpenDatabaseHandles()) + " handles, " +
           std::to_string(fake::HeldLocksHere()) + " locks";
}

void ExpectNothingLeft(int64_t blocks) {
    EXPECT_EQ(fake::LiveMessages(), 0);
    EXPECT_EQ(fake::LiveHashTables(), 0);
    EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
    EXPECT_EQ(fake::OpenSockets(), 0);
    EXPECT_EQ(fake::HeldLocksHere(), 0);
    EXPECT_EQ(fake::LiveBlocks(), blocks) << "blocks leaked";
    EXPECT_TRUE(fake::Misuses().empty()) << fake::Misuses().front();
}

std::string Shown(uint64_t result) {
    char number[24];
    std::snprintf(number, sizeof number, "0x%llX", static_cast<unsigned long long>(result));
    return number;
}

Reply Ask(Daemon& daemon, const Row& row) {
    return daemon.ExchangeAll({&row}).front();
}

void Furnish(Daemon& daemon, const Row& row) {
    EXPECT_EQ(Shown(Ask(daemon, row).result), Shown(row.good))
        << "the stage cannot be set: " << row.name;
}

void Furnish(Daemon& daemon) {
    for (const Row& row : StageRows()) Furnish(daemon, row);
}

}  // namespace fault_daemon
