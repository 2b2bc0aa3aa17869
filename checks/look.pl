#!/usr/bin/perl
# What look.sh refuses: given files, tells each place; given --line, reads lines and tells for each whether it is refused.
use strict;
use warnings;

# Seen in code and in its texts, but not in comments.
my @words = (
    qr/\bQColor\s*[({]\s*[^)}\s]/,               # QColor(12, 34, 56), QColor("red")
    qr/\bQColor\s+\w+\s*[({]\s*["\d]/,           # QColor danger(200, 0, 0)
    qr/\bQColor\s*::/,                           # fromRgb, fromHsv, ...
    qr/\bQColorConstants\b/,
    qr/\b(?:QRgb|QRgba64|qRgba?|qRgba64|qPremultiply)\b/,
    qr/\bQt::(?:GlobalColor|white|black|red|green|blue|cyan|magenta|yellow|gr[ae]y|light[Gg]r[ae]y|dark\w+|color[01])\b/,
    qr/\bset(?:NamedColor|Rgb|Rgba|RgbF|Rgba64|Hsv|HsvF|Hsl|HslF|Cmyk|CmykF|Red|Green|Blue)\s*\(/,
    qr/#(?:[0-9a-fA-F]{3,4}|[0-9a-fA-F]{6}|[0-9a-fA-F]{8})\b/,
    qr/\b0[xX](?:[0-9a-fA-F]{6}|[fF]{2}[0-9a-fA-F]{6})\b/,
    qr/\b(?:rgba?|hsla?|hsva?)\s*\(\s*[\d.%]/i,
    qr/\b(?:bgcolor|(?:background-|border-)?color|background|font-size|font-family|style)\s*[=:]\s*[\\"'#\w]/,
    qr/\b\d+(?:px|pt)\b/,
    qr/\b(?:setStyleSheet|styleSheet|QStyleSheetStyle)\b/,
    qr/\bset(?:PixelSize|PointSize|PointSizeF)\b/,
);
# Calls none of whose arguments may be a number of pixels.
my $sized = qr/set(?:\w*Spacing|ContentsMargins|ViewportMargins|TextMargins|Margins|DocumentMargin|Margin|Indent
    |(?:Minimum|Maximum|Fixed|Base)(?:Size|Width|Height)|IconSize|GridSize|SizeIncrement|(?:Mid)?LineWidth|Width|WidthF
    |Height|HeightF|Geometry|TabStopDistance)|addSpacing|addStrut|insertSpacing|resize|move|adjusted|adjust
    |(?:QSize|QRect|QMargins|QPoint|QPen|QFont)F?(?:\s+\w+)?|drawRoundedRect|addRoundedRect/x;
# Those that begin with the number of a row or a column.
my $numbered = qr/set(?:RowMinimumHeight|ColumnMinimumWidth|ColumnWidth|RowHeight)|resizeSection/;
my $arguments = qr/(?<arguments>\((?:[^()]++|(?&arguments))*+\))/;

sub blanked { my ($text) = @_; $text =~ s/[^\n]/ /g; return $text; }

# A number by itself, or reckoned from numbers alone; 0 and 1 are no sizes.
sub is_pixels {
    my ($argument) = @_;
    return $argument =~ /^[\s\d.fF*+\/-]+$/ && $argument =~ /\d/ && $argument !~ /^\s*-?\s*[01](?:\.0*)?[fF]?\s*$/;
}

# Where in a text something is refused.
sub refused {
    my ($text) = @_;
    my $string = qr/"(?:[^"\\\n]|\\.)*"/;
    $text =~ s{($string)|('(?:[^'\\\n]|\\.)+')|(//[^\n]*|/\*.*?\*/)}{defined $3 ? blanked($3) : $&}gse;
    my @places;
    for my $word (@words) {
        push @places, $-[0] while $text =~ /$word/g;
    }
    (my $code = $text) =~ s/$string/blanked($&)/gse;
    my $even = $code =~ tr/{}/()/r;
    while ($even =~ /\b(?:(?<numbered>$numbered)|$sized)\s*$arguments/g) {
        my ($at, $length, $numbered) = ($-[0], length($+{arguments}) - 2, defined $+{numbered});
        my $inside = substr($code, $+[0] - 1 - $length, $length);
        pos($even) = $at + 1; # a call among its arguments is looked at by itself
        1 while $inside =~ s/\([^()]*\)/x/;
        $inside =~ tr/{}/,,/;
        my @each = split /,/, $inside;
        shift @each if $numbered;
        push @places, $at if grep { is_pixels($_) } @each;
    }
    # What a form wishes for itself.
    push @places, $-[0] while $code =~ /\b(?:minimumS|s)izeHint\s*\([^)]*\)[^{;]*\{[^}]*return\s*\{\s*(?:[2-9]|\d\d+)\s*,/g;
    return map { 1 + (substr($text, 0, $_) =~ tr/\n//) } sort { $a <=> $b } @places;
}

my $status = 0;
if (@ARGV && $ARGV[0] eq '--line') {
    while (my $line = <STDIN>) {
        chomp $line;
        next if $line =~ /^(?:#\s|\s*$)/;
        my $allowed = $line =~ s/^ok: //;
        (my $text = $line) =~ s/\\n/\n/g;
        next if (refused($text) ? 1 : 0) != ($allowed ? 1 : 0);
        print $allowed ? "is refused: " : "gets through: ", $line, "\n";
        $status = 1;
    }
    exit $status;
}
for my $file (@ARGV) {
    open my $in, '<', $file or die "$file: $!\n";
    my $text = do { local $/; <$in> };
    my @lines = split /\n/, $text;
    my %told;
    for my $line (grep { !$told{$_}++ } refused($text)) {
        print "$file:$line:$lines[$line - 1]\n";
        $status = 1;
    }
}
exit $status;
