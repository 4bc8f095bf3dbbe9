"""mails.py DIRECTORY...: every header file there, with its body, is a mail without a defect."""
import email
import email.policy
import pathlib
import sys

POLICY = email.policy.SMTP.clone(raise_on_defect=True)
HEADERS = ["Date", "From", "To", "Subject", "Message-ID"]


def check(header, body):
    for line in (header + body).splitlines(keepends=True):
        assert line.endswith(b"\r\n"), line
    mail = email.message_from_bytes(header + b"\r\n" + body, policy=POLICY)
    assert mail.keys() == HEADERS, mail.keys()
    assert mail["Date"].datetime is not None
    assert mail["Message-ID"].endswith("@mail.example.com>")
    for name in ["Date", "To", "Subject"]:
        assert not mail[name].defects, (name, mail[name].defects)
    # Nobody is to answer the results mail: its sender is the null address.
    sender = mail["From"].addresses[0]
    assert sender.addr_spec in ["<>", "", "Postmaster@mail.example.com"], sender.addr_spec
    assert [group.display_name for group in mail["To"].groups] in [["Users with forward files"], [None]]
    assert mail.get_content().splitlines() == body.decode().splitlines()


headers = [path for folder in sys.argv[1:] for path in pathlib.Path(folder).glob("*-Header")]
assert len(headers) == 2 * len(sys.argv[1:]), headers
for path in headers:
    check(path.read_bytes(), path.with_name(path.name.removesuffix("Header") + "Body").read_bytes())
