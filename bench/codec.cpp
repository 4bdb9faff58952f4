// A domain from the table to bytes, and from bytes to a record of its own: the library's messages,
// protobuf with an arena, flatbuffers with verification. Everybody finds the domain under the same
// lock, and every decoder makes the same DomainInfo.
#include <aaadom/aaadom.h>
#include <google/protobuf/arena.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "flatbuffers_peer.h"
#include "protobuf_peer.h"
#include "race.h"
#include "table.h"
#include "timing.h"
#include "workspace.h"

namespace bench {
namespace {

constexpr uint32_t kRoom = 65535;

/// What a protobuf user who cares for speed takes: an arena on a block that is made once.
class Arena {
  public:
    google::protobuf::Arena& operator*() { return arena_; }

  private:
    static google::protobuf::ArenaOptions Options(char* block, size_t size) {
        google::protobuf::ArenaOptions options;
        options.initial_block = block;
        options.initial_block_size = size;
        return options;
    }
    static constexpr size_t kBlock = 256 * 1024;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(kBlock);
    google::protobuf::Arena arena_{Options(block_.get(), kBlock)};
};

struct Stage {
    Stage(int domains, Size size) {
        FillTable(domains, size);
        names = ShuffledNames(domains);
    }
    std::vector<std::string> names;
    std::vector<char> buffer = std::vector<char>(kRoom);
    Arena arena;
    flatbuffers::FlatBufferBuilder builder{kRoom};
};

/// The bytes are the stage's, valid until it encodes the next domain.
using Bytes = std::string_view;

Bytes EncodeTlv(Stage& stage, const std::string& name) {
    TLV_MSG* msg = DOM_EncodeDomain(name.c_str());
    const uint32_t length =
        TLV_Flush(msg, TLV_FORM_BUFFER, kRoom, reinterpret_cast<uintptr_t>(stage.buffer.data()));
    TLV_Destroy(msg);
    return {stage.buffer.data(), length};
}

Bytes EncodeProtobuf(Stage& stage, const std::string& name) {
    DOM_DomainInfoTableLock();
    const DomainInfo* domain = DOM_FindDomainByName(name.c_str());
    const size_t length = ProtobufEncode(*domain, stage.buffer.data(), kRoom, *stage.arena);
    DOM_DomainInfoTableUnlock();
    (*stage.arena).Reset();
    return {stage.buffer.data(), length};
}

/// The message stays in the builder: its users send it from there.
Bytes EncodeFlatbuffers(Stage& stage, const std::string& name) {
    DOM_DomainInfoTableLock();
    FlatbuffersEncode(*DOM_FindDomainByName(name.c_str()), stage.builder);
    DOM_DomainInfoTableUnlock();
    return {reinterpret_cast<const char*>(stage.builder.GetBufferPointer()),
            stage.builder.GetSize()};
}

DomainInfo* DecodeTlv(Stage&, const std::string& bytes) {
    TLV_MSG* msg = TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(bytes.data()),
                                        static_cast<uint32_t>(bytes.size()));
    DomainInfo* domain = DOM_DecodeDomain(msg);
    TLV_Destroy(msg);
    return domain;
}

DomainInfo* DecodeProtobuf(Stage& stage, const std::string& bytes) {
    DomainInfo* domain = ProtobufDecode(bytes.data(), bytes.size(), *stage.arena);
    (*stage.arena).Reset();
    return domain;
}

DomainInfo* DecodeFlatbuffers(Stage&, const std::string& bytes) {
    return FlatbuffersDecode(bytes.data(), bytes.size());
}

/// Where two records of one domain differ; null when nowhere.
const char* Difference(const DomainInfo& a, const DomainInfo& b) {
    if (strcmp(a.name, b.name) != 0) return "name";
    if (memcmp(&a.author_attr, &b.author_attr, sizeof a.author_attr) != 0) return "attributes";
    if (memcmp(a.service_extras, b.service_extras, sizeof a.service_extras) != 0) return "extras";
    if (a.limit_value != b.limit_value || a.state != b.state || a.session_time != b.session_time ||
        a.user_addr_type != b.user_addr_type || a.redirect_code != b.redirect_code ||
        a.acct_dual_stack_mode != b.acct_dual_stack_mode || a.slot != b.slot) {
        return "numbers";
    }
    if (strcmp(a.auth_rd_fail_permit_domain, b.auth_rd_fail_permit_domain) != 0 ||
        strcmp(a.escape_recover.domain_name, b.escape_recover.domain_name) != 0 ||
        strcmp(a.auth_fail_domain, b.auth_fail_domain) != 0) {
        return "names of other domains";
    }
    for (int row = 0; row < DOM_AAA_TYPES; ++row) {
        for (int column = 0; column < DOM_SERVICES; ++column) {
            const MethodList* one = a.method_lists[row][column];
            const MethodList* other = b.method_lists[row][column];
            if ((one == nullptr) != (other == nullptr)) return "presence of a list";
            if (one != nullptr && memcmp(one, other, sizeof *one) != 0) return "a list";
        }
    }
    return nullptr;
}

struct Codec {
    const char* name;
    Bytes (*encode)(Stage&, const std::string& name);
    DomainInfo* (*decode)(Stage&, const std::string& bytes);
};
constexpr Codec kCodecs[] = {{"aaadom", EncodeTlv, DecodeTlv},
                             {"protobuf, arena", EncodeProtobuf, DecodeProtobuf},
                             {"flatbuffers", EncodeFlatbuffers, DecodeFlatbuffers}};

/// A codec that drops a field would win without having done the work.
void CheckFields(Stage& stage, const Codec& codec) {
    for (const std::string& name : stage.names) {
        DomainInfo* domain = codec.decode(stage, std::string(codec.encode(stage, name)));
        Demand(domain != nullptr, codec.name);
        DOM_DomainInfoTableLock();
        const char* difference = Difference(*DOM_FindDomainByName(name.c_str()), *domain);
        DOM_DomainInfoTableUnlock();
        DOM_DestroyDomain(domain);
        if (difference == nullptr) continue;
        throw std::runtime_error(std::string(codec.name) + " changed " + difference);
    }
}

Window Encoding(std::shared_ptr<Stage> stage, const Codec& codec) {
    return [stage, encode = codec.encode](double seconds) {
        size_t next = 0;
        uint64_t empty = 0;
        const double ns = TimeLoop<ThreadClock>(seconds, [&](uint64_t) {
            empty += encode(*stage, stage->names[next]).empty();
            if (++next == stage->names.size()) next = 0;
        });
        Demand(empty == 0, "encoding a domain");
        return ns;
    };
}

Window Decoding(std::shared_ptr<Stage> stage, const Codec& codec) {
    std::vector<std::string> messages;
    for (const std::string& name : stage->names) messages.emplace_back(codec.encode(*stage, name));
    return [stage, decode = codec.decode, messages](double seconds) {
        size_t next = 0;
        uint64_t bad = 0;
        const double ns = TimeLoop<ThreadClock>(seconds, [&](uint64_t) {
            DomainInfo* domain = decode(*stage, messages[next]);
            bad += domain == nullptr;
            DOM_DestroyDomain(domain);
            if (++next == messages.size()) next = 0;
        });
        Demand(bad == 0, "decoding a domain");
        return ns;
    };
}

template <typename Kind>
std::vector<Contestant> Prepare(int domains, Size size, Kind kind) {
    auto stage = std::make_shared<Stage>(domains, size);
    std::vector<Contestant> contestants;
    for (const Codec& codec : kCodecs) {
        CheckFields(*stage, codec);
        contestants.push_back({codec.name, kind(stage, codec)});
    }
    return contestants;
}

}  // namespace

void AddCodecRaces(const Extent& extent, std::vector<Race>& races) {
    for (Size size : {Size::kSmall, Size::kLarge}) {
        const std::string what = std::string(SizeName(size)) + " domain";
        for (int domains : extent.Loads()) {
            races.push_back({std::string("encode-") + SizeName(size),
                             "Encode a " + what,
                             "domain",
                             domains,
                             "domains",
                             {{"protobuf, arena", Goal::kSpeedAtLeast, 5}},
                             extent.Seconds(0.08),
                             [=] { return Prepare(domains, size, Encoding); }});
        }
        for (int domains : extent.Loads()) {
            races.push_back({std::string("decode-") + SizeName(size),
                             "Decode a " + what,
                             "domain",
                             domains,
                             "domains",
                             {{"protobuf, arena", Goal::kSpeedAtLeast, 4},
                              {"flatbuffers", Goal::kCostAtMost, 1}},
                             extent.Seconds(0.08),
                             [=] { return Prepare(domains, size, Decoding); }});
        }
    }
}

}  // namespace bench
