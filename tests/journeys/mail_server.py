# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A mosque's mail server on the loopback: a private instance of Postfix, with a folder, ports and accounts of its own.

Real: SMTP, the queue, TLS, the password, the delivery into Maildirs. Played: the verdict of DMARC, which needs the DNS. Postfix adds
it on top of each incoming mail by the domain of the envelope sender. Needs root: Postfix changes between accounts.
"""
import contextlib
import email
import email.message
import email.policy
import glob
import os
import shutil
import smtplib
import socket
import ssl
import subprocess
import tempfile

import screen

HOST = "mx.mosque.example"  # also the name in Authentication-Results
SIGNUP = "texts@mosque.example"
USER = "aisha@example.org"
GENUINE, FORGED = "example.org", "example.net"  # domains of senders that DMARC passes and refuses
ACCOUNT, PASSWORD = "dusk-beacond", "a password"

MAIN = """
compatibility_level = 3.6
queue_directory = {folder}/queue
data_directory = {folder}/data
maillog_file = {folder}/log
maillog_file_prefixes = {folder}
myhostname = {host}
inet_interfaces = 127.0.0.1
inet_protocols = ipv4
mynetworks =
mydestination =
alias_maps =
alias_database =
local_recipient_maps =
smtp_dns_support_level = disabled
smtpd_peername_lookup = no
default_transport = error:no mail leaves this machine
virtual_mailbox_domains = mosque.example example.org
virtual_mailbox_base = {folder}/mail
virtual_mailbox_maps = regexp:{folder}/mailboxes
virtual_uid_maps = static:65534
virtual_gid_maps = static:65534
smtpd_relay_restrictions = reject_unauth_destination
smtpd_sender_restrictions = check_sender_access regexp:{folder}/verdicts
smtpd_tls_cert_file = {folder}/certificate.pem
smtpd_tls_key_file = {folder}/key.pem
smtpd_tls_auth_only = yes
smtpd_sasl_local_domain = {host}
"""
MASTER = """
127.0.0.1:{incoming} inet n - n - - smtpd
127.0.0.1:{submission} inet n - n - - smtpd
  -o smtpd_tls_security_level=encrypt -o smtpd_sasl_auth_enable=yes -o smtpd_sender_restrictions=
  -o smtpd_relay_restrictions=permit_sasl_authenticated,reject
cleanup unix n - n - 0 cleanup
qmgr unix n - n 300 1 qmgr
rewrite unix - - n - - trivial-rewrite
bounce unix - - n - 0 bounce
defer unix - - n - 0 bounce
error unix - - n - - error
virtual unix - n n - - virtual
anvil unix - - n - 1 anvil
tlsmgr unix - - n 1000? 1 tlsmgr
postlog unix-dgram n - n - 1 postlogd
"""
VERDICTS = f"""
/@{GENUINE}$/ PREPEND Authentication-Results: {HOST}; dmarc=pass header.from={GENUINE}
/./ PREPEND Authentication-Results: {HOST}; dmarc=fail
"""
SASL = "pwcheck_method: auxprop\nauxprop_plugin: sasldb\nsasldb_path: {folder}/accounts\nmech_list: PLAIN LOGIN\n"
# The file of accounts as saslpasswd2 writes it, which is in a package with a service of its own.
ADD_ACCOUNT = ('tie %accounts, "DB_File", $ARGV[0], O_RDWR | O_CREAT, 0640, $DB_HASH or die $!;'
               '$accounts{"$ARGV[1]\\0$ARGV[2]\\0userPassword"} = $ARGV[3];')


class MailServer:
    def __init__(self, folder):
        self._folder = folder
        self.incoming, self.submission = _free_ports(2)
        self.certificate = os.path.join(folder, "certificate.pem")
        self.log = os.path.join(folder, "log")

    def prepare(self):
        os.chmod(self._folder, 0o711)  # Postfix's accounts pass through it.
        for name in ("queue", "etc/sasl"):
            os.makedirs(os.path.join(self._folder, name))
        for name, account in (("data", "postfix"), ("mail", "nobody")):
            os.mkdir(os.path.join(self._folder, name), 0o700)
            shutil.chown(os.path.join(self._folder, name), account)
        words = {"folder": self._folder, "host": HOST, "incoming": self.incoming, "submission": self.submission}
        mailboxes = "".join(f"/^{address}$/ {self._maildir(address)}/\n" for address in (SIGNUP, USER)).replace(
            self._folder + "/mail/", "")
        for name, text in (("etc/main.cf", MAIN.format(**words)), ("etc/master.cf", MASTER.format(**words)),
                           ("mailboxes", mailboxes), ("verdicts", VERDICTS), ("etc/sasl/smtpd.conf", SASL.format(**words))):
            with open(os.path.join(self._folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        _run("openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
             "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1",
             "-keyout", os.path.join(self._folder, "key.pem"), "-out", self.certificate)
        accounts = os.path.join(self._folder, "accounts")
        _run("perl", "-MDB_File", "-e", ADD_ACCOUNT, accounts, ACCOUNT, HOST, PASSWORD)
        shutil.chown(accounts, "root", "postfix")

    def start(self):
        # The master itself, not "postfix start": it ends with this script, also if the script is killed.
        configuration = os.path.join(self._folder, "etc")
        _run("postfix", "-c", configuration, "check")
        master = os.path.join(_output("postconf", "-dh", "daemon_directory"), "master")
        return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", master, "-c", configuration, "-d"], start_new_session=True,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def is_ready(self):
        try:
            with smtplib.SMTP("127.0.0.1", self.incoming, timeout=screen.PATIENCE) as client:
                return client.noop()[0] == 250
        except OSError:
            return False

    def take(self, sender, recipient, text, subject="", headers=()):
        """A mail from the Internet. The headers come before those of this script, as a sender writes them."""
        mail = email.message.EmailMessage()
        for name, value in (*headers, ("From", sender or "MAILER-DAEMON@" + GENUINE), ("To", recipient), ("Subject", subject)):
            mail[name] = value
        mail.set_content(text)
        with smtplib.SMTP("127.0.0.1", self.incoming, timeout=screen.PATIENCE) as client:
            client.send_message(mail, sender, [recipient])

    @contextlib.contextmanager
    def submitting(self, password=PASSWORD):
        """A client of the port for the mosque's own programs, after STARTTLS and the password."""
        with smtplib.SMTP("localhost", self.submission, timeout=screen.PATIENCE) as client:
            client.starttls(context=ssl.create_default_context(cafile=self.certificate))
            client.login(f"{ACCOUNT}@{HOST}", password)
            yield client

    def maildir(self, address):
        """The Maildir of an address, also before its first mail."""
        path = self._maildir(address)
        for name in (".", "new", "cur", "tmp"):
            os.makedirs(os.path.join(path, name), mode=0o700, exist_ok=True)
            shutil.chown(os.path.join(path, name), "nobody", "nogroup")
        return path

    def mails(self, address):
        """The mails that have arrived for an address, oldest first."""
        paths = glob.glob(os.path.join(self._maildir(address), "new", "*"))
        return [_read(path) for path in sorted(paths, key=os.path.getmtime)]

    def wait_mails(self, address, count):
        screen.wait_for(f"{count} mails to {address}", lambda: len(self.mails(address)) >= count)
        return self.mails(address)

    def _maildir(self, address):
        return os.path.join(self._folder, "mail", address)


def _read(path):
    with open(path, "rb") as file:
        return email.message_from_binary_file(file, policy=email.policy.default)


def _run(*command):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def _output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout.strip()


def _free_ports(count):
    doors = [socket.create_server(("127.0.0.1", 0)) for _ in range(count)]
    ports = [door.getsockname()[1] for door in doors]
    for door in doors:
        door.close()
    return ports


def require():
    if os.geteuid() != 0 or not shutil.which("postfix"):
        raise SystemExit("needs root, and the packages of scripts/install_packages messages")


@contextlib.contextmanager
def running():
    with tempfile.TemporaryDirectory(prefix="duskbeacon-mail-") as folder:
        server = MailServer(folder)
        server.prepare()
        process = server.start()
        try:
            screen.wait_for("Postfix", lambda: server.is_ready() or process.poll() is not None)
            assert process.poll() is None, "Postfix ended"
            yield server
        except BaseException:
            with contextlib.suppress(OSError), open(server.log, encoding="utf-8") as log:
                print(log.read(), flush=True)
            raise
        finally:
            process.terminate()
            process.wait()
