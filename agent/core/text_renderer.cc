// SPDX-License-Identifier: Apache-2.0
#include "core/text_renderer.h"

#include "core/show_text.h"
#include "core/status_text.h"
#include "core/test_text.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

using Lines = std::vector<std::string>;

std::string DescribeRemote(const MepKey& mep, std::uint16_t remote) {
  return Describe(mep) + " remote " + std::to_string(remote);
}

// Gives the lines for each kind of record.
class TextOfRecord {
 public:
  explicit TextOfRecord(const Style& style) : style_(style) {}

  Lines operator()(const ConfigurationNews& news) const {
    switch (news.what) {
      case ConfigurationNews::What::Loaded:
        return {"configuration loaded: " + Summary(news.counts)};
      case ConfigurationNews::What::Reloaded:
        return {"configuration reloaded: " + Summary(news.counts)};
      case ConfigurationNews::What::Restored:
        return {"configuration as in force; nothing to do"};
      case ConfigurationNews::What::Unchanged:
        return {"configuration unchanged"};
    }
    return {};
  }

  Lines operator()(const ServerNews& news) const {
    switch (news.state) {
      case ServerState::Absent:
        return {Paint("server lost", Tone::Bad, style_) + "; waiting for it to come back"};
      case ServerState::Found:
        return {"server found; asking what it holds"};
      case ServerState::InStep:
        return {Paint("server in step", Tone::Good, style_)};
    }
    return {};
  }

  Lines operator()(const LocalStatusNews& news) const {
    return {Describe(news.mep) + ": " + Describe(news.status, style_)};
  }

  Lines operator()(const RemoteStatusNews& news) const {
    return {DescribeRemote(news.mep, news.remote) + ": " + Describe(news.status, style_)};
  }

  Lines operator()(const RemovalNews& news) const {
    return {(news.remote ? DescribeRemote(news.mep, *news.remote) : Describe(news.mep)) + ": " +
            Paint("removed by the server", Tone::Doubtful, style_)};
  }

  Lines operator()(const SessionNews& news) const { return {Describe(news.result, style_)}; }
  Lines operator()(const WarningNews& news) const { return {news.text}; }
  Lines operator()(const InterfaceNews& news) const {
    return {"interface " + Printable(news.name) + " is there; its endpoints are created anew"};
  }
  Lines operator()(const StopNews& /*news*/) const {
    return {"stopped; the server keeps its configuration"};
  }
  Lines operator()(const TestStarted& started) const { return TextOf(started); }
  // The result says it, and until then the progress.
  Lines operator()(const TestReply& /*reply*/) const { return {}; }
  Lines operator()(const TestResult& result) const { return TextOf(result, style_); }
  Lines operator()(const ShowAnswer& answer) const { return TextOf(answer, style_); }
  Lines operator()(const ClearAnswer& /*answer*/) const { return {"clear: sent"}; }
  Lines operator()(const HelpAnswer& answer) const { return TextOf(answer.commands); }

  Lines operator()(const CheckAnswer& answer) const {
    const std::string warnings =
        answer.warnings == 0 ? "" : ", " + Count(answer.warnings, "warning");
    return {answer.file + ": no mistakes" + warnings + ": " + Summary(answer.counts)};
  }

  Lines operator()(const Complaint& complaint) const {
    return {(complaint.command.empty() ? "" : complaint.command + ": ") + complaint.text};
  }

 private:
  const Style& style_;
};

}  // namespace

Lines TextRenderer::Render(const Record& record, WallTime /*now*/) const {
  return std::visit(TextOfRecord(style_), record);
}

Stream TextRenderer::StreamOf(const Record& record) const {
  const bool bad =
      std::holds_alternative<Complaint>(record) || std::holds_alternative<WarningNews>(record);
  return bad ? Stream::Error : Stream::Output;
}

}  // namespace cfm_agent
