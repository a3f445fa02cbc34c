#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The mail server of the journeys: the mails that it takes, those that it refuses, and the headers that it adds."""
import email.message
import smtplib
import unittest

import mail_server
import own_network

OTHERS = "someone@elsewhere.example"


def mail(text):
    message = email.message.EmailMessage()
    message["From"], message["To"], message["Subject"] = mail_server.SIGNUP, mail_server.USER, "A text"
    message.set_content(text)
    return message


class MailServerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = cls.enterClassContext(mail_server.running())

    def verdicts(self, sender):
        before = len(self.server.mails(mail_server.SIGNUP))
        forged = ("Authentication-Results", f"{mail_server.HOST}; dmarc=pass header.from={mail_server.FORGED}")
        self.server.take(sender, mail_server.SIGNUP, "test", headers=[forged])
        taken = self.server.wait_mails(mail_server.SIGNUP, before + 1)[-1]
        self.assertEqual(taken["Return-Path"], f"<{sender}>")
        self.assertEqual(taken.get_content().strip(), "test")
        names = [name for name in taken.keys() if name in ("Authentication-Results", "Received")]
        self.assertEqual(names, ["Authentication-Results", "Received", "Authentication-Results"])
        return taken.get_all("Authentication-Results")[0]

    def test_incoming_hasTheVerdictOfThisServerOnTop(self):
        self.assertEqual(self.verdicts(mail_server.USER), f"{mail_server.HOST}; dmarc=pass header.from=example.org")
        for sender in ("someone@" + mail_server.FORGED, ""):
            self.assertEqual(self.verdicts(sender), f"{mail_server.HOST}; dmarc=fail")

    def test_incoming_forAnotherServer_isRefused(self):
        with self.assertRaises(smtplib.SMTPRecipientsRefused):
            self.server.take(mail_server.USER, OTHERS, "relay this")

    def test_submission_withThePassword_reachesTheMailboxOnce(self):
        with self.server.submitting() as client:
            client.send_message(mail("the first"))
            client.send_message(mail("the second"))
        texts = [taken.get_content().strip() for taken in self.server.wait_mails(mail_server.USER, 2)]
        self.assertEqual(texts, ["the first", "the second"])

    def test_submission_withoutTlsOrPassword_isRefused(self):
        with smtplib.SMTP("localhost", self.server.submission) as client:
            client.ehlo()
            self.assertFalse(client.has_extn("auth"))
            with self.assertRaises(smtplib.SMTPException):
                client.send_message(mail("without a password"))
        with self.assertRaises(smtplib.SMTPAuthenticationError), self.server.submitting("another password"):
            pass


if __name__ == "__main__":
    mail_server.require()
    own_network.under_own_network()
    unittest.main()
