#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""messages_journey.py FOLDER: from "test" to the text at a prayer, once by mail and once by text message. The program, the service
and the mail server are real; the provider of text messages is played."""
import os
import re
import sys
import tempfile

import beacond
import hands
import mail_server
import main_window
import own_network
import screen
import service_journey
import text_provider

PHONE = "+4915112345678"
MORNING = "2026-03-20 09:30:10"
CONFIGURATION = """
[messages]
channels = ["mail", "sms"]
signup_address = "{signup}"
maildir = "{maildir}"
mail_server = "{host}"
sms_prefixes = ["+49"]

[[messages.channel]]
name = "mail"
type = "smtp"
server = "localhost:{submission}"
ca_file = "{certificate}"
from = "{signup}"
user = "{account}@{host}"
password_file = "mail.password"

[[messages.channel]]
name = "sms"
type = "http"
url = "http://127.0.0.1:{provider}/send"
headers = ["Authorization: Bearer {{secret}}"]
body_type = "json"
body = '{{"to": "{{address}}", "text": "{{text}}"}}'
accepted = [201]
accepted_text = "queued"
secret_file = "provider.token"

[[messages.hook]]
name = "provider"
header = "{header}"
secret_file = "provider.secret"
sender = "From"
text = "Body"
id = "MessageId"
"""


class ByMail:
    """A person with a mailbox on that server."""

    def __init__(self, server):
        self._server = server

    def ask(self):
        self._server.take(mail_server.USER, mail_server.SIGNUP, "", subject="Test")

    def wait_texts(self, count):
        mails = self._server.wait_mails(mail_server.USER, count)
        assert all(mail_server.SIGNUP in mail["From"] and mail_server.USER in mail["To"] for mail in mails), mails
        return self.texts()

    def texts(self):
        return [mail.get_content().strip() for mail in self._server.mails(mail_server.USER)]


class ByPhone:
    """A person with a phone of that provider."""

    def __init__(self, provider):
        self._provider = provider

    def ask(self):
        assert self._provider.post(beacond.ADDRESS + "/hook/provider", PHONE, "Test") < 300

    def wait_texts(self, count):
        return self._provider.wait_texts(PHONE, count)

    def texts(self):
        return self._provider.texts(PHONE)


def configuration(mail, provider):
    return CONFIGURATION.format(
        signup=mail_server.SIGNUP, maildir=mail.maildir(mail_server.SIGNUP), host=mail_server.HOST, submission=mail.submission,
        certificate=mail.certificate, account=mail_server.ACCOUNT, provider=provider.port, header=text_provider.HEADER)


def register(installation, settings, device, code):
    """Types the ID and the code, and ticks the mobile alert of noon, whose time it returns."""
    with installation.start(settings, MORNING) as program:
        noon = main_window.Main(program).times()[2]
        hands.Window(program, main_window.TITLE).click(hands.LINK, "Alerts")
        dialog = hands.Window(program, "Alerts").wait()
        dialog.click(hands.TAB, "Mobile Alert")
        dialog.enter("Mobile Device ID", ["ctrl+a"], device)
        service_journey.register(program, dialog, code, service_journey.REGISTERED, "1")
        dialog.tick("Enable Mobile Alerts")
        dialog.click(hands.TAB, "Duhr")
        screen.wait_for("the mobile alert", lambda: dialog.is_live(hands.BOX, "Mobile Alert, Duhr"))
        dialog.tick("Alert on, Duhr")
        dialog.tick("Mobile Alert, Duhr")
        hands.Settings(program).wait_prayer("duhr", enabled="true", mobil="true")
    return noon


def reach_noon(installation, service, noon):
    """Starts the program before the prayer, and waits for its request."""
    before = service.requests("prayerCall.pl")
    with installation.start(instant=f"2026-03-20 {main_window.clock(main_window.minutes(noon) - 1)}:48"):
        screen.wait_for("the prayer", lambda: service.requests("prayerCall.pl") > before)


def from_test_to_text(programs, service, person, name):
    person.ask()
    answer = person.wait_texts(1)[0]
    device, code = (re.search(pattern, answer).group(1) for pattern in ("device ID:? ([0-9]+)", "code:? ([0-9 ]{19})"))
    # The service is the network that the program finds.
    settings = main_window.SETTINGS.replace("P-77", f"P-{name}-of-an-older-service").replace(
        'dist="dbeacon"', f'dist="dbeacon" probe="{beacond.ADDRESS}/healthz"')
    with tempfile.TemporaryDirectory() as folder:
        installation = service_journey.Installation(programs, folder)
        noon = register(installation, settings, device, code)
        reach_noon(installation, service, noon)
        assert person.wait_texts(2)[1] == f"Duhr {noon}", person.texts()
        # A second computer of the same person, or a second start.
        reach_noon(installation, service, noon)
    screen.wait_for("the outbox to be empty", lambda: service.run("outbox") == "")
    assert len(person.texts()) == 2, person.texts()
    print("  text", person.texts()[1], flush=True)


def forged(service, mail):
    """A mail whose sender can't be proved gets no answer, nor does an automatic one."""
    answers = len(mail.mails(mail_server.USER))
    mail.take("aisha@" + mail_server.FORGED, mail_server.SIGNUP, "test")
    mail.take(mail_server.USER, mail_server.SIGNUP, "test", headers=[("Auto-Submitted", "auto-replied")])
    mail.take("", mail_server.SIGNUP, "test")
    # The last one is answered, after the others.
    mail.take(mail_server.USER, mail_server.SIGNUP, "stop")
    mail.wait_mails(mail_server.USER, answers + 1)
    assert len(mail.mails(mail_server.USER)) == answers + 1
    return service


def main():
    programs = os.path.abspath(sys.argv[1])
    with hands.Desktop(), mail_server.running() as mail, text_provider.running() as provider:
        secrets = (("mail.password", mail_server.PASSWORD), ("provider.token", text_provider.TOKEN),
                   ("provider.secret", text_provider.SECRET))
        with beacond.running(programs, configuration(mail, provider), secrets) as service:
            print("by mail", flush=True)
            from_test_to_text(programs, service, ByMail(mail), "mail")
            print("by text message", flush=True)
            from_test_to_text(programs, service, ByPhone(provider), "phone")
            print("forged mails", flush=True)
            forged(service, mail)
            assert service.complaints() == [], service.complaints()
    print("all as it should be")


if __name__ == "__main__":
    mail_server.require()
    own_network.under_own_network()
    screen.under_own_session()
    main()
