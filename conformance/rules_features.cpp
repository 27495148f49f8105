#include "tour.h"

#include <qelvalues/results.h>
#include <qelvalues/settings.h>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Feature table";

static void checkOffered(Subject &subject)
{
    const ProbedDevice &instrument = subject.opened();
    const auto features = instrument.offered();
    if (features.isEmpty())
        throw Broken{QStringLiteral("the open device offers no feature")};
    if (features.contains(Device::DF_None))
        throw Broken{QStringLiteral("the open device offers DF_None")};
}

using Judge = QVector<values::Problem> (*)(Device::DeviceFeature, const QVariant &);

static void checkEach(Subject &subject, Judge judge)
{
    const ProbedDevice &instrument = subject.opened();
    const auto features = instrument.offered();
    Offences offences;
    for (const auto feature : features) {
        const auto problems = judge(feature, instrument->descriptor(feature));
        if (!problems.isEmpty())
            offences.add(QStringLiteral("%1: %2").arg(featureName(feature), toString(problems)),
                         QVector<Event>());
    }
    offences.conclude();
}

static void checkDescriptors(Subject &subject)
{
    checkEach(subject, values::checkDescriptor);
}

static void checkSettings(Subject &subject)
{
    checkEach(subject, values::checkSettings);
}

QVector<Rule> featureRules()
{
    return {
        {501, group, Severity::Failure, false, Needs::Open,
         "An open device offers at least one feature, and never DF_None.",
         "Without a feature there is nothing to do with an instrument.",
         "Call addFeature() or setDescriptor() for each feature before setOpen(true).",
         checkOffered},
        {502, group, Severity::Failure, false, Needs::Open,
         "Descriptors hold the documented keys with the documented types.",
         "Front ends label axes and lay out plates by them without knowing the driver.",
         "See docs/feature-values.md for the keys of each feature.", checkDescriptors},
        {503, group, Severity::Failure, false, Needs::Open,
         "Settings name a registered type, and their defaults, limits and choices fit it.",
         "Forms and the command line are built from the settings alone.",
         "Put values of exactly the named type into the descriptor (QVariant::fromValue()); limits "
         "are int or double. See docs/feature-values.md.",
         checkSettings},
    };
}

} // namespace qel::conformance
