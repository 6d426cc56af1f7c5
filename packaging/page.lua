-- What a document of this repository needs to become a page of the packages (a filter for pandoc).

-- The packages carry pages in the places of documents.
function Link(link)
  if not link.target:match('^%a+:') then
    link.target = link.target:gsub('%.md$', '.html'):gsub('%.md#', '.html#')
  end
  return link
end

-- A switch is one word, never broken at its dash; only a word wider than a phone's page has to be.
function Code(code)
  local escapes = { ['&'] = '&amp;', ['<'] = '&lt;', ['>'] = '&gt;' }
  local words = code.text:gsub('%S+', function(word)
    local kind = utf8.len(word) > 36 and 'long' or 'word'
    return '<span class="' .. kind .. '">' .. word:gsub('[&<>]', escapes) .. '</span>'
  end)
  return pandoc.RawInline('html', '<code>' .. words .. '</code>')
end

-- Marks for the document check.
function RawBlock()
  return {}
end

-- The page is called as its first heading.
function Pandoc(document)
  for _, block in ipairs(document.blocks) do
    if block.t == 'Header' and block.level == 1 then
      document.meta.pagetitle = pandoc.utils.stringify(block)
      return document
    end
  end
end
