#include "report/alarms.h"

#include <memory>
#include <optional>
#include <string_view>

#include "catalogue/statistics.h"
#include "formats/csv.h"
#include "formats/jsonmember.h"
#include "lines/failure.h"
#include "text/number.h"

namespace NS_KX::NS_KXDU {

namespace {

// Finds the identifier in a line; one thread.
using FindIdentifier = std::function<std::optional<std::string_view>(std::string_view line)>;

// The field number `place` between tabs. Such files have no quotes: one in a field is part of it.
std::optional<std::string_view> FieldBetweenTabs(std::string_view line, int place) {
    for (; place > 0; --place) {
        const auto tab = line.find('\t');
        if (tab == std::string_view::npos) {
            return std::nullopt;
        }
        line.remove_prefix(tab + 1);
    }
    return line.substr(0, line.find('\t'));
}

FindIdentifier MakeFinder(const AlarmOptions& options) {
    const auto place = ReadNumber(options.field);
    if (place && options.delimiter == '\t') {
        return [place = *place](std::string_view line) { return FieldBetweenTabs(line, place); };
    }
    if (place) {
        return [place = *place, delimiter = options.delimiter,
                found = std::string()](std::string_view line) mutable -> std::optional<std::string_view> {
            CsvFields fields(line, delimiter);
            std::string_view field;
            for (int at = 0; at <= place; ++at) {
                if (!fields.Next(field)) {
                    return std::nullopt;
                }
            }
            found = field;  // the view may end with `fields`
            return found;
        };
    }
    const auto member = std::make_shared<JsonMember>(options.field);
    return [member](std::string_view line) { return member->Find(line); };
}

// Counts the alarms of a block.
class AlarmCounter final : public LineConverter {
public:
    AlarmCounter(const AlarmOptions& options, const ChosenNes& nes) : m_find(MakeFinder(options)), m_nes(nes) {}

    void Convert(std::string_view line, LineResult& /*result*/) override {
        const auto fdn = m_find(line);
        const std::int32_t neId = fdn ? NeOf(*fdn) : Statistics::NO_NE;
        if (neId == Statistics::NO_NE) {
            CountUnread();
        } else if (m_nes.AreAll() || m_nes.Has(neId)) {
            ++m_alarms.total;
            auto& ofNe = m_alarms.nes[neId];
            const auto known = ofNe.find(*fdn);
            ++(known != ofNe.end() ? known : ofNe.emplace(*fdn, 0).first)->second;
        }
    }

    void Refuse(std::string_view /*reason*/, std::size_t /*column*/, LineResult& /*result*/) override { CountUnread(); }

    // Moves what was counted to `all`.
    void MoveTo(Alarms& all) {
        all.total += m_alarms.total;
        all.unread += m_alarms.unread;
        for (const auto& [neId, counts] : m_alarms.nes) {
            auto& ofNe = all.nes[neId];
            for (const auto& [fdn, count] : counts) {
                ofNe[fdn] += count;
            }
        }
        m_alarms = {};
    }

private:
    // An alarm of no NE belongs to none that was chosen.
    void CountUnread() {
        if (m_nes.AreAll()) {
            ++m_alarms.total;
            ++m_alarms.unread;
        }
    }

    FindIdentifier m_find;
    const ChosenNes& m_nes;
    Alarms m_alarms;
};

void RequireRoom(const Alarms& alarms) {
    std::size_t identifiers = 0;
    for (const auto& [neId, counts] : alarms.nes) {
        identifiers += counts.size();
    }
    if (identifiers > Alarms::MOST_IDENTIFIERS) {
        throw Failure(Cause::INPUT, "there are alarms of more than " + std::to_string(Alarms::MOST_IDENTIFIERS) +
                                        " identifiers, too many for one page; choose NEs with --ne, such as --ne "
                                        "1-2000");
    }
}

}  // namespace

Alarms ReadAlarms(const AlarmOptions& options, const ChosenNes& nes, const BulkOptions& bulk,
                  const std::vector<FileInUse>& filesInUse) {
    Alarms alarms;
    BulkOptions ofAlarms;
    ofAlarms.files = {options.file};
    ofAlarms.jobs = bulk.jobs;
    ofAlarms.isProgressHidden = bulk.isProgressHidden;
    ofAlarms.names = bulk.names;
    LineWork work;
    work.filesInUse = filesInUse;
    work.makeConverter = [&] { return std::make_unique<AlarmCounter>(options, nes); };
    work.takeGathered = [&](LineConverter& converter) {
        static_cast<AlarmCounter&>(converter).MoveTo(alarms);  // made above
        RequireRoom(alarms);
    };
    RunLines(ofAlarms, work);
    return alarms;
}

}  // namespace NS_KX::NS_KXDU
