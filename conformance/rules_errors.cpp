#include "catalogues.h"
#include "tour.h"

#include <qeldevices/deviceerrors.h>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Errors";

// All errors that can be brought about without harm, each as it stood when it was set.
static QVector<Event> errorsOf(Subject &subject)
{
    const Tour &tour = subject.tour();
    QVector<Event> events;
    for (const Run &run : tour.runs)
        events += run.events;
    if (tour.overlap)
        events += tour.overlap->events;
    QVector<Event> errors;
    for (const Event &event : qAsConst(events)) {
        if (event.kind == Event::ErrorChanged
            && (event.errorCode != 0 || !event.additionalInfoTrId.isEmpty()))
            errors += event;
    }
    if (errors.isEmpty())
        throw NotApplicable{QStringLiteral("there is no harmless way to bring about an error")};
    return errors;
}

static void checkCodes(Subject &subject)
{
    Offences offences;
    const QVector<Event> errors = errorsOf(subject);
    for (const Event &event : errors) {
        const int code = event.errorCode;
        if (code != 0
            && (code < devices::ERROR_DEVICE_UNKNOWN || code > devices::ERROR_DEVICE_API_TOO_NEW))
            offences.add(QStringLiteral("error %1").arg(errorName(code)), QVector<Event>{event});
    }
    offences.conclude();
}

static void checkDetails(Subject &subject)
{
    Offences offences;
    QStringList ids;
    const QVector<Event> errors = errorsOf(subject);
    for (const Event &event : errors) {
        const QString id = event.additionalInfoTrId;
        if (id.isEmpty() || ids.contains(id))
            continue;
        ids += id;
        const QString fault = translationFault(id);
        if (!fault.isEmpty())
            offences.add(fault, QVector<Event>{event});
    }
    offences.conclude();
    if (ids.isEmpty())
        throw NotApplicable{QStringLiteral("the errors brought about have no details")};
}

QVector<Rule> errorRules()
{
    return {
        {801, group, Severity::Failure, false, Needs::Open,
         "Error codes are those of DeviceErrorCode.",
         "Any other code is shown as an unknown error.",
         "Use ERROR_DEVICE_VENDOR_SPECIFIC and say more in the additional information.",
         checkCodes},
        {802, group, Severity::Failure, false, Needs::Open,
         "The additional information of an error is a translation id that the plugin's catalogues "
         "resolve in English and German, or empty.",
         "The application shows it in the user's language.",
         "Translate the id in plugin_en.ts and plugin_de.ts; log what is meant for developers.",
         checkDetails},
    };
}

} // namespace qel::conformance
