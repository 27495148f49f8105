#include "link.h"

#include "wire.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using devices::DeviceInfo;

Link::Link(QObject *parent)
    : QObject(parent)
{ }

Link::~Link()
{
    if (m_watch) {
        m_watch->detach();
        m_watch->cancel();
    }
}

void Link::connectTo(std::shared_ptr<grpc::Channel> channel)
{
    disconnect();
    m_channel = std::move(channel);
    m_stub = wire::Instruments::NewStub(m_channel);
    m_watch =
        WatchClient::start([this](grpc::ClientContext *context, grpc::CompletionQueue *queue) {
            return m_stub->PrepareAsyncWatch(context, queue);
        });
    m_watch->attach(this, [this] { read(); });
    wire::Ask first;
    *first.mutable_hello() = hello();
    m_watch->send(std::move(first));
}

void Link::disconnect()
{
    if (m_watch) {
        m_watch->detach();
        m_watch->cancel();
    }
    m_watch = nullptr;
    m_stub = nullptr;
    m_channel = nullptr;
    m_isReady = false;
    m_knowsInstruments = false;
    m_isAsked = false;
    m_instruments.clear();
}

void Link::giveUp(const QString &why)
{
    disconnect();
    emit lost(why);
}

bool Link::isReady() const
{
    return m_isReady;
}

void Link::waitUntilReady(std::chrono::milliseconds time)
{
    waitFor(m_isReady, time);
}

void Link::waitForInstruments(std::chrono::milliseconds time)
{
    if (!std::exchange(m_hasWaited, true))
        settle(time);
}

void Link::settle(std::chrono::milliseconds time)
{
    waitFor(m_knowsInstruments, time);
}

bool Link::knowsInstruments() const
{
    return m_knowsInstruments;
}

void Link::waitFor(const bool &flag, std::chrono::milliseconds time)
{
    const QDeadlineTimer deadline(time);
    // What has arrived is looked at also when the time is over already.
    bool isOver = false;
    while (m_watch && !flag && !isOver) {
        isOver = deadline.hasExpired();
        if (m_watch->wait(std::chrono::milliseconds(deadline.remainingTime())))
            read();
    }
}

// Also called without news, by who has waited for some.
void Link::read()
{
    const std::shared_ptr<WatchClient> watch = m_watch;
    if (!watch)
        return;
    const QPointer<Link> self(this);
    const bool isOver = watch->hasEnded();
    const auto all = watch->take();
    for (const wire::Told &told : all) {
        hear(told);
        if (!self || m_watch != watch)
            return;
    }
    if (!isOver)
        return;
    const grpc::Status status = watch->status();
    giveUp(status.ok() ? QStringLiteral("the other side has ended the connection")
                       : fromWire(status.error_message()));
}

void Link::hear(const wire::Told &told)
{
    if (!m_isReady) {
        introduce(told);
        return;
    }
    if (told.has_results()) {
        m_results.assign(told.results().results().begin(), told.results().results().end());
        m_hasResults = true;
        return;
    }
    m_isAsked = false;
    m_knowsInstruments = true;
    ++m_question;
    QList<DeviceInfo> instruments;
    for (const wire::Record &record : told.records())
        instruments.append(fromWire(record));
    if (instruments == m_instruments)
        return;
    m_instruments = instruments;
    emit instrumentsChanged();
}

void Link::introduce(const wire::Told &told)
{
    const QString problem = mismatch(told.hello());
    if (!problem.isEmpty()) {
        giveUp(problem);
        return;
    }
    constexpr quint32 longestGrace = 24 * 60 * 60 * 1000; // ms, as servers grant it
    m_grace = std::chrono::milliseconds(std::min(told.grace(), longestGrace));
    m_plugins.assign(told.plugins().begin(), told.plugins().end());
    m_drivers.clear();
    for (const std::string &driver : told.drivers())
        m_drivers.append(fromWire(driver));
    m_isReady = true;
    m_isAsked = true;
    expectAnswer();
    emit ready();
}

void Link::ask()
{
    if (!m_watch || !m_isReady || m_isAsked)
        return;
    m_isAsked = true;
    m_watch->send(wire::Ask());
    expectAnswer();
}

void Link::expectAnswer()
{
    const auto judge = [this, question = m_question] {
        // What has arrived may not have been looked at yet.
        read();
        if (m_isAsked && m_question == question)
            reportSilence(QStringLiteral("availableDevices()"));
    };
    QTimer::singleShot(m_deadline - lastMoment(), this,
                       [=] { QTimer::singleShot(lastMoment(), this, judge); });
}

QList<DeviceInfo> Link::instruments()
{
    ask();
    return m_instruments;
}

QStringList Link::drivers() const
{
    return m_drivers;
}

const std::vector<wire::Plugin> &Link::plugins() const
{
    return m_plugins;
}

std::optional<std::vector<wire::KeptResult>> Link::keptResults(const QString &name,
                                                               std::chrono::milliseconds time)
{
    if (!m_isReady)
        return std::nullopt;
    wire::Ask ask;
    if (name.isEmpty())
        ask.mutable_results();
    else
        ask.set_result(toWire(name));
    m_hasResults = false;
    m_watch->send(std::move(ask));
    waitFor(m_hasResults, time);
    return m_hasResults ? std::optional(std::exchange(m_results, {})) : std::nullopt;
}

std::chrono::milliseconds Link::grace() const
{
    return m_grace;
}

std::shared_ptr<DriveClient> Link::drive()
{
    if (!m_isReady)
        return nullptr;
    return DriveClient::start([this](grpc::ClientContext *context, grpc::CompletionQueue *queue) {
        return m_stub->PrepareAsyncDrive(context, queue);
    });
}

std::chrono::milliseconds Link::deadline() const
{
    return m_deadline;
}

std::chrono::milliseconds Link::lastMoment() const
{
    return m_deadline / 4;
}

void Link::setDeadline(std::chrono::milliseconds deadline)
{
    m_deadline = deadline;
}

void Link::reportSilence(const QString &call)
{
    emit silent(call);
}

} // namespace qel::rpc
